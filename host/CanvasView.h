#pragma once
// The canvas: the main buffer on a dark surround, fitted to the view or at a fixed zoom (1:1 shows
// every pixel once), with the selection outline as marching ants. It lives inside a scroll area.

#include <QImage>
#include <QLine>
#include <QWidget>

#include <vector>

class QScrollArea;
class QTimer;

namespace kirrel::host {

class CanvasView : public QWidget {
    Q_OBJECT
  public:
    explicit CanvasView(QScrollArea* area);

    void setImage(const QImage& image);
    const QImage& image() const { return image_; }
    void setOutline(std::vector<QLine> lines);
    bool hasOutline() const { return !outline_.empty(); }
    void setOutlineVisible(bool on);

    bool fitting() const { return fit_; }
    double zoom() const; // the scale in effect, also when fitting
    void setFit();
    void setZoom(double z); // 1.0 is 1:1
    void zoomBy(double factor);

    // Image pixel under a point of the widget; (-1, -1) outside the picture.
    QPoint imagePixelAt(QPoint widgetPos) const;

  signals:
    void zoomChanged();
    void hovered(QPoint imagePixel);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    QSize sizeHint() const override;

  private:
    QRectF imageRect() const;
    void relayout();

    QScrollArea* area_;
    QImage image_;
    std::vector<QLine> outline_;
    bool outlineVisible_ = true;
    bool fit_ = true;
    double zoom_ = 1.0;
    int antsPhase_ = 0;
    QTimer* ants_;
};

} // namespace kirrel::host
