// TMyElliArc: an elliptical arc, chord or sector (ArcStyle) of a circle or an
// ellipse (ArcMode). Drawing files store the shape base record followed by
// ArcMode and ArcStyle, one ordinal byte each, in every version.
//
// This class is complete for storing, copying and reading. How an arc draws,
// is hit and is edited is later work: until then Draw and the other virtual
// operations keep the shape base's behaviour (Draw paints only the info text).
#pragma once

#include "shapes/shape.h"

namespace lumatrex {

class TMyElliArc : public TMyShape {
  Q_OBJECT
  Q_PROPERTY(lumatrex::TArcMode ArcMode READ GetArcMode WRITE SetArcMode)
  Q_PROPERTY(lumatrex::TArcStyle ArcStyle READ GetArcStyle WRITE SetArcStyle)

 public:
  // A new arc is an elliptical arc (amEllipse, asArc).
  explicit TMyElliArc(TMyShapeOwner* owner);
  const char* ClassName() const override { return "TMyElliArc"; }

  // The base copy plus ArcMode and ArcStyle of an arc source.
  void Assign(const TMyShape& source) override;
  void LoadFromStream(TStream& stream) override;
  void SaveToStream(TStream& stream) const override;

  // ---- published properties (setters only store) ----------------------------
  TArcMode GetArcMode() const { return arcMode_; }
  void SetArcMode(TArcMode value) { arcMode_ = value; }
  TArcStyle GetArcStyle() const { return arcStyle_; }
  void SetArcStyle(TArcStyle value) { arcStyle_ = value; }

 private:
  TArcMode arcMode_ = amEllipse;
  TArcStyle arcStyle_ = asArc;
};

}  // namespace lumatrex
