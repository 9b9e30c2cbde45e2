#include "support/golden.h"

#include <QDir>

#include "support/test_paths.h"

namespace lumatrex::test {

int DifferingPixels(const QImage& a, const QImage& b, QRect* where) {
  int differing = 0;
  for (int y = 0; y < a.height(); ++y)
    for (int x = 0; x < a.width(); ++x)
      if ((a.pixel(x, y) & 0xFFFFFF) != (b.pixel(x, y) & 0xFFFFFF)) {
        ++differing;
        if (where) *where |= QRect(x, y, 1, 1);
      }
  return differing;
}

::testing::AssertionResult SamePicture(const QImage& actual, const QImage& expected, const std::string& name) {
  if (actual.size() != expected.size())
    return ::testing::AssertionFailure() << name << ": size " << actual.width() << "x" << actual.height()
                                         << ", expected " << expected.width() << "x" << expected.height();
  QRect where;
  const int differing = DifferingPixels(actual, expected, &where);
  if (differing == 0) return ::testing::AssertionSuccess();
  const std::string saved = ::testing::TempDir() + QFileInfo(QString::fromStdString(name)).completeBaseName().toStdString();
  actual.save(QString::fromStdString(saved + ".actual.png"), "PNG");
  expected.save(QString::fromStdString(saved + ".expected.png"), "PNG");
  return ::testing::AssertionFailure() << differing << " pixels differ from " << name << " within (" << where.left()
                                       << ", " << where.top() << ")-(" << where.right() << ", " << where.bottom()
                                       << "); pictures: " << saved << ".actual.png and .expected.png";
}

::testing::AssertionResult MatchesGoldenPicture(const QImage& actual, const std::string& relative) {
  const QString path = QString::fromStdString(DataPath(relative));
  if (qEnvironmentVariableIsSet("LUMATREX_UPDATE_GOLDEN")) {
    QDir().mkpath(QFileInfo(path).path());
    if (actual.save(path, "PNG")) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "cannot write " << path.toStdString();
  }
  const QImage expected = QImage(path).convertToFormat(QImage::Format_RGB32);
  if (expected.isNull()) return ::testing::AssertionFailure() << "missing golden picture " << path.toStdString();
  return SamePicture(actual, expected, relative);
}

}  // namespace lumatrex::test
