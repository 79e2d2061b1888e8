#pragma once
// A small picture view for the side panel (the swap picture, the alpha plane): the image scaled to
// fit with its shape kept, on a checkerboard-free dark ground, with a thin frame.

#include <QImage>
#include <QWidget>

namespace kirrel::host {

class BufferThumbnail : public QWidget {
    Q_OBJECT
  public:
    explicit BufferThumbnail(QWidget* parent = nullptr);
    void setImage(const QImage& image);
    const QImage& image() const { return image_; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    QSize sizeHint() const override { return {200, heightForWidth(200)}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int w) const override;

  private:
    static constexpr int kMaxHeight = 150;
    QImage image_;
};

} // namespace kirrel::host
