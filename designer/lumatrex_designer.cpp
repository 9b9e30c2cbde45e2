#include "designer/lumatrex_designer.h"

#include <QPainter>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QExtensionManager>

#include "canvas/tmycad.h"
#include "designer/canvas_task_menu.h"
#include "inspector/component_inspector.h"
#include "inspector/inspector_grid.h"
#include "ruler/ruler.h"
#include "ruler/ruler_corner.h"

namespace lumatrex {

TWidgetPlugin::TWidgetPlugin(TDescription description, QObject* parent)
    : QObject(parent), d_(std::move(description)) {}

// A small coloured tile with the class's initial letters, drawn here so the
// plugin carries no image files.
QIcon TWidgetPlugin::icon() const {
  QPixmap pixmap(22, 22);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(d_.iconColor);
  painter.setPen(d_.iconColor.darker());
  painter.drawRoundedRect(QRectF(0.5, 0.5, 21, 21), 4, 4);
  painter.setPen(Qt::white);
  QFont font = painter.font();
  font.setPixelSize(10);
  font.setBold(true);
  painter.setFont(font);
  const QString shortName = d_.className.section("::", -1).mid(1);
  QString letters;
  for (QChar c : shortName)
    if (c.isUpper() && letters.size() < 2) letters += c;
  painter.drawText(pixmap.rect(), Qt::AlignCenter, letters);
  return QIcon(pixmap);
}

void TWidgetPlugin::initialize(QDesignerFormEditorInterface* core) {
  if (initialized_) return;
  initialized_ = true;
  if (d_.className == QLatin1String("lumatrex::TMyCAD") && core)
    core->extensionManager()->registerExtensions(new TCanvasTaskMenuFactory(core->extensionManager()),
                                                 Q_TYPEID(QDesignerTaskMenuExtension));
}

QString TWidgetPlugin::domXml() const {
  return QStringLiteral(
             "<ui language=\"c++\"><widget class=\"%1\" name=\"%2\">"
             "<property name=\"geometry\"><rect><x>0</x><y>0</y><width>%3</width><height>%4</height></rect></property>"
             "<property name=\"toolTip\"><string>%5</string></property>"
             "</widget></ui>")
      .arg(d_.className, d_.objectName)
      .arg(d_.size.width())
      .arg(d_.size.height())
      .arg(d_.toolTip);
}

namespace {

// Controls on a form being edited draw as at run time but take no part in
// the form's mouse handling, which belongs to Designer.
template <class T>
QWidget* Designing(QWidget* parent) {
  auto* control = new T(parent);
  if constexpr (std::is_base_of_v<TCustomControl, T>) control->SetDesigning(true);
  return control;
}

}  // namespace

TLumatrexWidgets::TLumatrexWidgets(QObject* parent) : QObject(parent) {
  const TWidgetPlugin::TDescription widgets[] = {
      {"lumatrex::TMyCAD", "canvas/tmycad.h", tr("Drawing canvas: shapes, layers, undo, zoom and grid"), "canvas",
       {400, 300}, QColor(0x2f, 0x6f, 0xb5), &Designing<TMyCAD>},
      {"lumatrex::TRsRuler", "ruler/ruler.h", tr("Ruler with ticks and labels in a chosen unit"), "ruler",
       {200, 33}, QColor(0xb5, 0x7a, 0x2f), &Designing<TRsRuler>},
      {"lumatrex::TRsRulerCorner", "ruler/ruler_corner.h", tr("Corner piece where two rulers meet"), "rulerCorner",
       {33, 33}, QColor(0xb5, 0x7a, 0x2f), &Designing<TRsRulerCorner>},
      {"lumatrex::TInspectorGrid", "inspector/inspector_grid.h", tr("Property grid of the inspected objects"),
       "inspectorGrid", {260, 400}, QColor(0x4a, 0x8f, 0x4a), &Designing<TInspectorGrid>},
      {"lumatrex::TComponentInspector", "inspector/component_inspector.h",
       tr("Tree of a canvas's layers and shapes, bound to a property grid"), "componentInspector", {260, 240},
       QColor(0x4a, 0x8f, 0x4a), &Designing<TComponentInspector>},
  };
  for (const auto& d : widgets) widgets_.append(new TWidgetPlugin(d, this));
}

}  // namespace lumatrex
