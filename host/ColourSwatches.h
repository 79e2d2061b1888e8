#pragma once
// The host's two paint colours as overlapping swatches, primary in front: a click on a swatch opens a
// colour picker, the small arrows exchange the two, the small squares reset them to black and white.

#include <QColor>
#include <QWidget>

namespace kirrel::host {

class ColourSwatches : public QWidget {
    Q_OBJECT
  public:
    explicit ColourSwatches(QWidget* parent = nullptr);
    void setColours(QColor primary, QColor secondary);
    QColor primary() const { return primary_; }
    QColor secondary() const { return secondary_; }

  signals:
    // The user picked new colours (one or both).
    void coloursChosen(QColor primary, QColor secondary);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    QSize sizeHint() const override { return {72, 64}; }
    QSize minimumSizeHint() const override { return {72, 64}; }

  private:
    QRect primaryRect() const { return {2, 2, 38, 38}; }
    QRect secondaryRect() const { return {24, 22, 38, 38}; }
    QRect exchangeRect() const { return {44, 0, 20, 20}; }
    QRect resetRect() const { return {2, 44, 18, 18}; }
    void pick(bool primary);

    QColor primary_ = Qt::black;
    QColor secondary_ = Qt::white;
};

} // namespace kirrel::host
