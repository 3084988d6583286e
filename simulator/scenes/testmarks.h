#pragma once

#include "simulator/scenes/field.h"

namespace simulator {

/// Marks of a test object, drawn on a field of optical depths (0 lets all light pass). A mark never makes
/// what lies under it thinner, so marks may overlap. Edges are smooth to a pixel.

void addDisc(Field &depths, Point centre, float radius, float depth);
void addStroke(Field &depths, const Segment &stroke, float depth);
void addRectangle(Field &depths, const Box &box, float angle, float depth);
/// Bars of half the pitch, standing upright or lying.
void addLinePairs(Field &depths, const Box &box, float pitch, bool upright, float depth);
/// Steps from top to bottom, the first of `depth` / `steps`, the last of `depth`.
void addStepWedge(Field &depths, const Box &box, int steps, float depth);
/// A star of `spokes` opaque sectors.
void addStar(Field &depths, Point centre, float radius, int spokes, float depth);
/// A cross in a circle.
void addCross(Field &depths, Point centre, float radius, float depth);
/// Letters of bent wire; known are Q, V, 1, K and L. `origin` is the top left corner.
void addLetters(Field &depths, const char *text, Point origin, float height, float depth);

} // namespace simulator
