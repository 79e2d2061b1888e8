// kirrel_batch: runs one of the panel's converter batch files, without a shell. See
// src/exchange/BatchRunner.h for the lines it understands and how it signals completion.

#include "exchange/BatchRunner.h"

#include <QCoreApplication>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    return kirrel::exchange::batchRunnerMain(QCoreApplication::arguments());
}
