#include "support/golden.h"

#include <QDir>

#include "support/test_paths.h"

namespace lumatrex::test {

::testing::AssertionResult MatchesGoldenPicture(const QImage& actual, const std::string& relative) {
  const QString path = QString::fromStdString(DataPath(relative));
  if (qEnvironmentVariableIsSet("LUMATREX_UPDATE_GOLDEN")) {
    QDir().mkpath(QFileInfo(path).path());
    if (actual.save(path, "PNG")) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "cannot write " << path.toStdString();
  }
  const QImage expected = QImage(path).convertToFormat(QImage::Format_RGB32);
  if (expected.isNull()) return ::testing::AssertionFailure() << "missing golden picture " << path.toStdString();
  const QImage got = actual.convertToFormat(QImage::Format_RGB32);
  if (got.size() != expected.size())
    return ::testing::AssertionFailure() << relative << ": size " << got.width() << "x" << got.height() << ", expected "
                                         << expected.width() << "x" << expected.height();
  int differing = 0;
  for (int y = 0; y < got.height(); ++y)
    for (int x = 0; x < got.width(); ++x) differing += (got.pixel(x, y) & 0xFFFFFF) != (expected.pixel(x, y) & 0xFFFFFF);
  if (differing == 0) return ::testing::AssertionSuccess();
  const std::string saved = ::testing::TempDir() + QFileInfo(path).completeBaseName().toStdString() + ".actual.png";
  got.save(QString::fromStdString(saved), "PNG");
  return ::testing::AssertionFailure() << differing << " pixels differ from " << relative << "; rendered picture: " << saved;
}

}  // namespace lumatrex::test
