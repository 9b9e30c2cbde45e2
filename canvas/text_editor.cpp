// In-place editing of text shapes: a plain multi-line editor laid over the
// shape's frame. The editor is a child widget of the canvas; the text shape
// itself never sees it.
#include <QFocusEvent>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <algorithm>
#include <cmath>
#include <functional>

#include "canvas/tmycad.h"
#include "platform/fonts.h"
#include "platform/qt_interop.h"
#include "shapes/text.h"

namespace lumatrex {

namespace {

class TInPlaceTextEditor : public QPlainTextEdit {
 public:
  TInPlaceTextEditor(QWidget* parent, std::function<void()> commit, std::function<void()> cancel)
      : QPlainTextEdit(parent), commit_(std::move(commit)), cancel_(std::move(cancel)) {}

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape) return cancel_();
    if (enter && (event->modifiers() & Qt::ControlModifier)) return commit_();
    QPlainTextEdit::keyPressEvent(event);
  }
  // Leaving the editor for another widget keeps what was typed, as a click
  // elsewhere does in drawing programs; a popup (the context menu) does not.
  void focusOutEvent(QFocusEvent* event) override {
    QPlainTextEdit::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason) commit_();
  }

 private:
  std::function<void()> commit_;
  std::function<void()> cancel_;
};

TStringList SplitLines(const QString& text) {
  TStringList lines;
  for (const QString& line : text.split('\n')) lines.push_back(line.toStdString());
  return lines;
}

bool IsBlank(const TStringList& lines) {
  return std::all_of(lines.begin(), lines.end(), [](const std::string& l) { return l.empty(); });
}

QString JoinLines(const TStringList& lines) {
  QStringList joined;
  for (const std::string& line : lines) joined << QString::fromStdString(line);
  return joined.join('\n');
}

}  // namespace

void TMyCAD::EditTextInPlace(TMyShape* shape) {
  auto* text = dynamic_cast<TMyText*>(shape);
  if (!text) return;
  if (textEditor_) CommitTextEdit();
  auto* editor = new TInPlaceTextEditor(this, [this] { CommitTextEdit(); }, [this] { CancelTextEdit(); });
  TFont font = text->LayoutFont();
  font.SetHeight(static_cast<std::int32_t>(std::lround(font.Height() * zoom_)));
  if (font.Height() == 0) font.SetHeight(-1);
  editor->setFont(ToQFont(font, text->GetCharacterSpace()));
  QPalette palette = editor->palette();
  palette.setColor(QPalette::Text, ToQColor(font.Color()));
  editor->setPalette(palette);
  const TRect box = myRecttoRect(GetShapesLTRBinZoom({text}));
  editor->setGeometry(box.Left, box.Top, std::max(box.Right - box.Left, 80), std::max(box.Bottom - box.Top, 40));
  editor->setPlainText(JoinLines(text->GetLines()));
  editor->moveCursor(QTextCursor::End);
  textEditor_ = editor;
  editedText_ = text;
  editedIsNew_ = false;
  editor->show();
  editor->setFocus();
}

TMyText* TMyCAD::CloseTextEditor() {
  QPlainTextEdit* editor = textEditor_;
  TMyShape* shape = editedText_;
  // Cleared first: hiding the editor takes its focus, which commits again.
  textEditor_ = nullptr;
  editedText_ = nullptr;
  editor->hide();
  // Out of the canvas's children at once; Qt deletes it after this event.
  editor->setParent(nullptr);
  editor->deleteLater();
  setFocus();
  // The shape may have gone while the editor was open (a drawing loaded).
  const bool alive = std::any_of(shapes_.begin(), shapes_.end(), [shape](const auto& s) { return s.get() == shape; });
  return alive ? dynamic_cast<TMyText*>(shape) : nullptr;
}

void TMyCAD::CommitTextEdit() {
  if (!textEditor_) return;
  const TStringList lines = SplitLines(textEditor_->toPlainText());
  const bool isNew = editedIsNew_;
  TMyText* text = CloseTextEditor();
  if (!text) return;
  if (isNew && IsBlank(lines)) {
    DropNewText(*text);
    return;
  }
  if (text->GetLines() == lines) return;
  // A text the tool has just drawn is undone by its "ACT_ADD" step.
  if (!isNew) PushtoUndoRedoShapeList({text}, ACT_CHANGE);
  text->SetLines(lines);
  SetModified(true);
  Invalidate();
}

// A text drawn and left without a character would be an invisible frame the
// user never meant: it goes, with the step that added it.
void TMyCAD::DropNewText(TMyShape& text) {
  const bool addedLast = !undoList_.empty() && undoList_.back().ActionName == ACT_ADD &&
                         undoList_.back().SavedShape->ShapeId == text.ShapeId;
  if (addedLast)
    PopFromUndoRedoShapeList();
  else
    DeleteShapeById(text.ShapeId, false);
  Invalidate();
}

void TMyCAD::CancelTextEdit() {
  if (!textEditor_) return;
  const bool isNew = editedIsNew_;
  TMyText* text = CloseTextEditor();
  if (isNew && text && IsBlank(text->GetLines())) DropNewText(*text);
}

bool TMyCAD::OpenTextEditorAt(const TPoint& p) {
  for (auto it = shapes_.rbegin(); it != shapes_.rend(); ++it) {
    TMyShape* s = it->get();
    if (!dynamic_cast<TMyText*>(s) || !s->GetVisible() || s->GetLocked() || !IsVisibleLayerByID(s->LayerId)) continue;
    if (!s->IsClickedMe(Canvas(), p)) continue;
    EditTextInPlace(s);
    return true;
  }
  return false;
}

}  // namespace lumatrex
