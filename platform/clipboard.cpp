#include "platform/clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>

#include "platform/qt_interop.h"

namespace lumatrex {

void SetClipboardContent(const TClipboardContent& content) {
  auto* data = new QMimeData;
  for (const auto& [type, bytes] : content.Data)
    data->setData(QString::fromStdString(type),
                  QByteArray(reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())));
  if (!content.Picture.Empty()) data->setImageData(ToQImage(content.Picture));
  if (!content.Text.empty()) data->setText(QString::fromStdString(content.Text));
  // The clipboard takes the data over.
  QGuiApplication::clipboard()->setMimeData(data);
}

std::optional<std::vector<std::uint8_t>> ClipboardData(const std::string& mimeType) {
  const QMimeData* data = QGuiApplication::clipboard()->mimeData();
  const QString type = QString::fromStdString(mimeType);
  if (!data || !data->hasFormat(type)) return std::nullopt;
  const QByteArray bytes = data->data(type);
  return std::vector<std::uint8_t>(bytes.begin(), bytes.end());
}

bool ClipboardPicture(TBitmap& picture) {
  const QImage image = QGuiApplication::clipboard()->image();
  if (image.isNull()) return false;
  AssignQImage(picture, image);
  return true;
}

std::string ClipboardText() { return QGuiApplication::clipboard()->text().toStdString(); }

}  // namespace lumatrex
