// Real dialogs for the platform hooks when a QApplication runs.
#pragma once

namespace lumatrex {

// Installs a QMessageBox for ShowMessage, QInputDialog for the text dialog and
// QCoreApplication::exit for Terminate, for each hook that is still unset.
// Called by every control's constructor; a host or a test that installed its
// own hooks first keeps them.
void InstallWidgetHooks();

}  // namespace lumatrex
