// TMyText: a block of text lines laid out in a rectangle's rotatable frame.
// Drawing files store the shape base record, then IsBorder and IsSolid (a
// byte each) in every version and, from "XP.a" on, the Lines (an int32 count
// and that many length-prefixed strings), VAlignment, HAlignment and
// WordWrap (a byte each). CharacterSpace is not stored.
//
// Layout works in the frame's own axes: x along P0-P1, y along P0-P3, in
// model pixels, so the text turns and mirrors with its frame and scales with
// the zoom. Lines are set in the shape's font (with LogUse: LogHeight model
// pixels tall, stretched across by LogWidth / LogHeight), aligned by
// HAlignment and VAlignment, broken at spaces when WordWrap is on, and
// clipped to the frame.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/canvas.h"
#include "shapes/closed_shapes.h"

namespace lumatrex {

class TMyText : public TMyRectangle {
  Q_OBJECT
  Q_PROPERTY(bool IsBorder READ GetIsBorder WRITE SetIsBorder)
  Q_PROPERTY(bool IsSolid READ GetIsSolid WRITE SetIsSolid)
  Q_PROPERTY(lumatrex::TStringList Lines READ GetLines WRITE SetLines)
  Q_PROPERTY(lumatrex::TTextLayout VAlignment READ GetVAlignment WRITE SetVAlignment)
  Q_PROPERTY(lumatrex::TAlignment HAlignment READ GetHAlignment WRITE SetHAlignment)
  Q_PROPERTY(bool WordWrap READ GetWordWrap WRITE SetWordWrap)
  Q_PROPERTY(std::int32_t CharacterSpace READ GetCharacterSpace WRITE SetCharacterSpace)

 public:
  // A new text has no lines, no border, a clear background, top-left
  // alignment, word wrap on and no extra character spacing.
  explicit TMyText(TMyShapeOwner* owner);
  const char* ClassName() const override { return "TMyText"; }

  // The rectangle's copy plus every property above of a text source.
  void Assign(const TMyShape& source) override;
  // A record older than "XP.a" ends after IsSolid; Lines, alignments and
  // WordWrap then keep their values.
  void LoadFromStream(TStream& stream) override;
  void SaveToStream(TStream& stream) const override;

  // The brush behind the text when IsSolid, the lines, then the frame in the
  // pen when IsBorder.
  void Draw(TCanvas& canvas) override;
  // The glyph outlines of the laid-out lines as the surface's path records
  // them, flattened to straight segments, in device pixels at the current
  // zoom; each figure closes with ptCloseFigure. Canvas only lends its path
  // and text metrics: nothing is drawn on it.
  void GetPathPoints(TCanvas& canvas, std::vector<TPoint>& points, std::vector<std::uint8_t>& types);
  // The lines as they are set in the frame: wrapped when WordWrap is on,
  // measured in Canvas's metrics for the text font.
  std::vector<std::string> LaidOutLines(TCanvas& canvas);
  // The text font with the LogUse size applied, in model pixels.
  TFont LayoutFont() const;

  // ---- published properties (setters only store) ----------------------------
  // Outline the frame with the pen.
  bool GetIsBorder() const { return isBorder_; }
  void SetIsBorder(bool value) { isBorder_ = value; }
  // Fill the frame with the brush behind the text.
  bool GetIsSolid() const { return isSolid_; }
  void SetIsSolid(bool value) { isSolid_ = value; }
  const TStringList& GetLines() const { return lines_; }
  void SetLines(const TStringList& value) {
    lines_ = value;
    Changed();
  }
  TTextLayout GetVAlignment() const { return vAlignment_; }
  void SetVAlignment(TTextLayout value) { vAlignment_ = value; }
  TAlignment GetHAlignment() const { return hAlignment_; }
  void SetHAlignment(TAlignment value) { hAlignment_ = value; }
  // Break lines wider than the frame at spaces.
  bool GetWordWrap() const { return wordWrap_; }
  void SetWordWrap(bool value) { wordWrap_ = value; }
  // Extra device pixels after every character.
  std::int32_t GetCharacterSpace() const { return characterSpace_; }
  void SetCharacterSpace(std::int32_t value) { characterSpace_ = value; }

 private:
  // Sets the text font, the character spacing and the world transform from
  // frame axes to device pixels; returns the transform it replaced.
  TXForm BeginFrameText(TCanvas& canvas);
  // TextOut of every laid-out line at its aligned place (frame axes).
  void TextOutLines(TCanvas& canvas);
  long double FrameWidth() const;
  long double FrameHeight() const;

  bool isBorder_ = false;
  bool isSolid_ = false;
  TStringList lines_;
  TTextLayout vAlignment_ = tlTop;
  TAlignment hAlignment_ = taLeftJustify;
  bool wordWrap_ = true;
  std::int32_t characterSpace_ = 0;
};

}  // namespace lumatrex
