// Image shapes from the image tool (a frame, then a file), from code and from
// the clipboard.
#include <QFileDialog>
#include <QImage>
#include <QImageReader>
#include <exception>

#include "canvas/tmycad.h"
#include "platform/clipboard.h"
#include "platform/hooks.h"
#include "platform/qt_interop.h"
#include "shapes/image.h"

namespace lumatrex {

namespace {

std::string AskPictureFile(QWidget* parent) {
  QStringList patterns{"*.bmp"};
  for (const QByteArray& format : QImageReader::supportedImageFormats()) patterns << "*." + QString(format);
  patterns.removeDuplicates();
  const QString filter = "Pictures (" + patterns.join(' ') + ");;All files (*)";
  return QFileDialog::getOpenFileName(parent, "Open picture", QString(), filter).toStdString();
}

}  // namespace

bool TMyCAD::LoadPictureFile(const std::string& fileName, TBitmap& picture) {
  // Our reader takes BMP variants Qt refuses (RLE, bit fields, OS/2
  // headers); anything it cannot read goes to Qt's readers.
  try {
    TBitmap bmp;
    bmp.LoadFromFile(fileName);
    picture = bmp;
    return true;
  } catch (const std::exception&) {
  }
  QImage image;
  if (!image.load(QString::fromStdString(fileName)) || image.isNull()) return false;
  AssignQImage(picture, image);
  return true;
}

TMyShape* TMyCAD::AddImageShapeByCode(const TBitmap& picture, const std::string& name, const TArrMyPoint& points,
                                      float angle) {
  if (picture.Empty()) return nullptr;
  const auto w = static_cast<float>(picture.Width()), h = static_cast<float>(picture.Height());
  const TArrMyPoint frame = points.empty() ? TArrMyPoint{{0, 0}, {w, 0}, {w, h}, {0, h}} : points;
  if (frame.size() != 4) return nullptr;
  auto* image = dynamic_cast<TMyImage*>(AddShapeFromCode("TMyImage", name, frame, angle));
  if (!image) return nullptr;
  image->Bitmap() = picture;
  PushtoUndoRedoShapeList({image}, ACT_ADD);
  TMyShape* reported = image;
  std::int32_t count = GetShapesCount();
  if (OnShapeAdded) OnShapeAdded(this, reported, count);
  return image;
}

bool TMyCAD::PasteImage() {
  TBitmap picture;
  if (!ClipboardPicture(picture)) return false;
  TMyShape* shape = AddImageShapeByCode(picture, "", {}, 0);
  if (!shape) return false;
  SetModified(true);
  RemoveAllWorkingShapes();
  AddWorkingShapes(shape);
  Invalidate();
  return true;
}

bool TMyCAD::FillImageFromUserFile(TMyShape* shape) {
  auto* image = dynamic_cast<TMyImage*>(shape);
  if (!image) return false;
  std::string fileName;
  if (OnGetImageFileName) {
    if (!OnGetImageFileName(this, fileName)) return false;
  } else {
    fileName = AskPictureFile(this);
  }
  if (fileName.empty()) return false;
  TBitmap picture;
  if (!LoadPictureFile(fileName, picture)) {
    ShowMessage("The picture cannot be read.");
    return false;
  }
  image->Bitmap() = picture;
  return true;
}

}  // namespace lumatrex
