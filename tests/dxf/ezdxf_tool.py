"""Helper of the DXF tests, built on ezdxf as an independent DXF implementation.

  write VERSION OUT   writes the import fixture in DXF version VERSION (R12, R2000, ...)
  audit IN OUT        reads IN, prints "errors N" and the entity counts by type,
                      saves what ezdxf understood to OUT; exit status 1 on errors
"""
import math
import sys

import ezdxf


def write(version, out):
    doc = ezdxf.new(version)
    doc.header["$INSUNITS"] = 4
    doc.header["$EXTMIN"] = (-10, -10, 0)
    doc.header["$EXTMAX"] = (200, 100, 0)
    doc.layers.add("Walls", color=1)
    doc.layers.add("Hidden", color=3).off()
    ring = doc.blocks.new("RING")
    ring.add_circle((0, 0), 1)
    nest = doc.blocks.new("NEST", base_point=(1, 0))
    nest.add_line((1, 0), (2, 0))
    nest.add_blockref("RING", (1, 0))
    msp = doc.modelspace()
    msp.add_line((0, 0), (10, 0), dxfattribs={"layer": "Walls"})
    msp.add_circle((20, 0), 5, dxfattribs={"layer": "Hidden", "color": 5})
    msp.add_arc((40, 0), 5, 0, 90)
    msp.add_polyline2d([(0, 20), (10, 20), (10, 30)], close=True)
    msp.add_solid([(0, 40), (10, 40), (0, 50), (10, 50)])
    msp.add_trace([(20, 40), (30, 40), (20, 50), (30, 50)])
    msp.add_text("Hello", dxfattribs={"insert": (0, 60), "height": 2.5})
    msp.add_point((5, 70))
    msp.add_blockref("NEST", (100, 0), dxfattribs={"xscale": 2, "yscale": 2, "rotation": 90})
    msp.add_blockref("RING", (150, 0), dxfattribs={"column_count": 3, "row_count": 2,
                                                    "column_spacing": 10, "row_spacing": 10})
    msp.add_3dface([(0, 0, 0), (1, 0, 0), (1, 1, 0)])
    if version != "R12":
        msp.add_ellipse((60, 0), major_axis=(10, 0), ratio=0.5)
        msp.add_ellipse((80, 0), major_axis=(0, 10), ratio=0.5, start_param=0, end_param=math.pi / 2)
        msp.add_lwpolyline([(0, 80, 1), (10, 80, 0), (10, 90, 0)], format="xyb")
        msp.add_mtext("A\\PB", dxfattribs={"insert": (0, 100), "char_height": 2.5, "width": 20})
        msp.add_open_spline([(0, 110), (5, 120), (10, 120), (15, 110)], degree=3,
                            knots=[0, 0, 0, 0, 1, 1, 1, 1])
        msp.add_spline([(20, 110), (25, 115), (30, 110), (35, 115)])
    doc.saveas(out)


def audit(path, out):
    doc = ezdxf.readfile(path)
    auditor = doc.audit()
    print("errors", len(auditor.errors))
    for error in auditor.errors:
        print("error", error.message)
    counts = {}
    for entity in doc.modelspace():
        counts[entity.dxftype()] = counts.get(entity.dxftype(), 0) + 1
    for name in sorted(counts):
        print(name, counts[name])
    print("units", doc.header.get("$INSUNITS"), "version", doc.dxfversion)
    doc.saveas(out)
    return 1 if auditor.errors else 0


if __name__ == "__main__":
    if sys.argv[1] == "write":
        write(sys.argv[2], sys.argv[3])
    else:
        sys.exit(audit(sys.argv[2], sys.argv[3]))
