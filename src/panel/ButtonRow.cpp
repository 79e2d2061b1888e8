#include "panel/ButtonRow.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QPushButton>

namespace kirrel::panel {

QHBoxLayout* buttonRow(QCheckBox* save, QPushButton* undo, QPushButton* run, QPushButton* done) {
    auto* row = new QHBoxLayout;
    row->addWidget(save);
    row->addWidget(undo);
    row->addStretch(1);
    row->addWidget(run);
    row->addWidget(done);
    return row;
}

} // namespace kirrel::panel
