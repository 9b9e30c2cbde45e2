// TMyText: a block of text lines laid out in a rectangle's frame. Drawing
// files store the shape base record, then IsBorder and IsSolid (a byte each)
// in every version and, from "XP.a" on, the Lines (an int32 count and that
// many length-prefixed strings), VAlignment, HAlignment and WordWrap (a byte
// each). CharacterSpace is not stored.
//
// The class is complete for storing, copying and reading. Laying out and
// drawing the lines is later work: until then the text shape draws, is hit
// and is edited as its rectangle frame (which leaves the caption to the text
// shape).
#pragma once

#include <cstdint>

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

  // ---- published properties (setters only store) ----------------------------
  // Outline the frame with the pen.
  bool GetIsBorder() const { return isBorder_; }
  void SetIsBorder(bool value) { isBorder_ = value; }
  // Fill the frame with the brush behind the text.
  bool GetIsSolid() const { return isSolid_; }
  void SetIsSolid(bool value) { isSolid_ = value; }
  const TStringList& GetLines() const { return lines_; }
  void SetLines(const TStringList& value) { lines_ = value; }
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
  bool isBorder_ = false;
  bool isSolid_ = false;
  TStringList lines_;
  TTextLayout vAlignment_ = tlTop;
  TAlignment hAlignment_ = taLeftJustify;
  bool wordWrap_ = true;
  std::int32_t characterSpace_ = 0;
};

}  // namespace lumatrex
