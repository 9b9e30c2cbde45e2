// Lumatrex: Qt 6 controls for vector drawing and diagramming.
// Including this header brings in the whole public API.
#pragma once

#include "platform/types.h"
#include "platform/stream.h"
#include "platform/screen.h"
#include "platform/hooks.h"
#include "platform/graphics.h"
#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "platform/control.h"

#include "geometry/geometry.h"

#include "persistence/user_data.h"

#include "shapes/shape_enums.h"
#include "shapes/shape_owner.h"
#include "shapes/shape.h"
#include "shapes/drawing_modes.h"
#include "shapes/gradient.h"
#include "shapes/bitmap_filters.h"
#include "shapes/lines.h"
#include "shapes/closed_shapes.h"
#include "shapes/bspline.h"
#include "shapes/arc.h"
#include "shapes/bezier.h"
#include "shapes/text.h"
#include "shapes/image.h"
#include "shapes/connectors.h"
#include "shapes/groups.h"
#include "shapes/shape_factory.h"

#include "library/lib_format.h"
#include "library/cmb_shape.h"
#include "library/lib_manager.h"

#include "canvas/tmycad.h"

#include "dxf/dxf.h"

#include "ruler/base_ruler.h"
#include "ruler/ruler.h"
#include "ruler/ruler_corner.h"

#include "inspector/property_model.h"
#include "inspector/property_dialogs.h"
#include "inspector/menu_editor.h"
#include "inspector/inspector_grid.h"
#include "inspector/component_inspector.h"
