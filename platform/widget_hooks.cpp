#include "platform/widget_hooks.h"

#include <QApplication>
#include <QInputDialog>
#include <QMessageBox>
#include <cstdlib>

#include "platform/hooks.h"

namespace lumatrex {

void InstallWidgetHooks() {
  if (!qobject_cast<QApplication*>(QCoreApplication::instance())) return;
  TPlatformHooks& hooks = PlatformHooks();
  if (!hooks.ShowMessage)
    hooks.ShowMessage = [](const std::string& text) {
      QMessageBox::information(QApplication::activeWindow(), QApplication::applicationName(),
                               QString::fromStdString(text));
    };
  if (!hooks.Terminate) hooks.Terminate = [] { QCoreApplication::exit(EXIT_FAILURE); };
  if (!hooks.EditText)
    hooks.EditText = [](const std::string& caption, std::string& text) {
      bool ok = false;
      const QString result = QInputDialog::getMultiLineText(QApplication::activeWindow(), QString::fromStdString(caption),
                                                            QString(), QString::fromStdString(text), &ok);
      if (ok) text = result.toStdString();
      return ok;
    };
}

}  // namespace lumatrex
