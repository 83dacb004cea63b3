// A shape is a function that gives the colour at a point of the square from (0, 0) to (16, 16).
// Every pixel asks it at a grid of points and takes the mean, which smooths the edges.

#include "ui/icon_drawing.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tessary {
namespace {

constexpr double kUnits = 16;
constexpr int kGrid = 8;

using Colour = std::uint32_t;  // 0xRRGGBB
constexpr Colour kNone = 0xFF000000;
constexpr Colour kWhite = 0xFFFFFF;
constexpr Colour kGreen = 0x1F8A3B;
constexpr Colour kRed = 0xCC2B2B;
constexpr Colour kAmber = 0xF2B01E;
constexpr Colour kInk = 0x3A2A00;
constexpr Colour kPaper = 0xFDFDFD;
constexpr Colour kOutline = 0x4A6A94;
constexpr Colour kFold = 0xC9D7EA;

struct Point {
  double x;
  double y;
};

double Distance(Point a, Point b) { return std::hypot(a.x - b.x, a.y - b.y); }

double DistanceToLine(Point p, Point from, Point to) {
  const double length = Distance(from, to);
  const double along =
      ((p.x - from.x) * (to.x - from.x) + (p.y - from.y) * (to.y - from.y)) / (length * length);
  const double t = std::clamp(along, 0.0, 1.0);
  return Distance(p, {from.x + t * (to.x - from.x), from.y + t * (to.y - from.y)});
}

bool OnStroke(Point p, Point from, Point to, double width) {
  return DistanceToLine(p, from, to) <= width / 2;
}

bool InBox(Point p, double left, double top, double right, double bottom) {
  return p.x >= left && p.x <= right && p.y >= top && p.y <= bottom;
}

bool InDisc(Point p) { return Distance(p, {8, 8}) <= 7; }

Colour CorrectAt(Point p) {
  if (!InDisc(p)) return kNone;
  const bool tick =
      OnStroke(p, {4.6, 8.3}, {7, 10.7}, 1.9) || OnStroke(p, {7, 10.7}, {11.4, 5.6}, 1.9);
  return tick ? kWhite : kGreen;
}

Colour ErrorAt(Point p) {
  if (!InDisc(p)) return kNone;
  const bool cross =
      OnStroke(p, {5.3, 5.3}, {10.7, 10.7}, 2) || OnStroke(p, {10.7, 5.3}, {5.3, 10.7}, 2);
  return cross ? kWhite : kRed;
}

// A triangle with round corners: the points that are near enough to a smaller one.
bool InTriangle(Point p) {
  constexpr Point kTop{8, 2.6};
  constexpr Point kLeft{2.2, 13.2};
  constexpr Point kRight{13.8, 13.2};
  constexpr double kRoundness = 1.5;
  const double half_width = (p.y - kTop.y) / (kLeft.y - kTop.y) * (kRight.x - kLeft.x) / 2;
  const bool inside = p.y >= kTop.y && p.y <= kLeft.y && std::abs(p.x - kTop.x) <= half_width;
  return inside || DistanceToLine(p, kTop, kLeft) <= kRoundness ||
         DistanceToLine(p, kTop, kRight) <= kRoundness ||
         DistanceToLine(p, kLeft, kRight) <= kRoundness;
}

Colour WarningAt(Point p) {
  if (!InTriangle(p)) return kNone;
  const bool mark = InBox(p, 7, 5, 9, 10) || InBox(p, 7, 11, 9, 13);
  return mark ? kInk : kAmber;
}

Colour ReportAt(Point p) {
  constexpr double kFoldSize = 4;
  constexpr double kLeft = 3;
  constexpr double kTop = 1;
  constexpr double kRight = 13;
  constexpr double kBottom = 15;
  const double beyond_fold = (p.x - (kRight - kFoldSize)) - (p.y - kTop);
  if (!InBox(p, kLeft, kTop, kRight, kBottom) || beyond_fold > 0) return kNone;
  const bool border = !InBox(p, kLeft + 1, kTop + 1, kRight - 1, kBottom - 1) || beyond_fold > -1.2;
  if (border) return kOutline;
  if (p.x > kRight - kFoldSize - 1 && p.y < kTop + kFoldSize + 1) return kFold;
  const bool lines = InBox(p, 5, 7, 11, 8) || InBox(p, 5, 9, 11, 10) || InBox(p, 5, 11, 9, 12);
  return lines ? kOutline : kPaper;
}

// In the order of IconShape.
constexpr std::array kShapes = {CorrectAt, ErrorAt, WarningAt, ReportAt};

std::uint32_t PixelOf(Colour (*colour_at)(Point), double left, double top, double extent) {
  constexpr std::uint32_t kPoints = kGrid * kGrid;
  std::array<std::uint32_t, 3> sums{};
  std::uint32_t covered = 0;
  for (int i = 0; i < kGrid * kGrid; ++i) {
    const Colour colour = colour_at(
        {left + extent * (i % kGrid + 0.5) / kGrid, top + extent * (i / kGrid + 0.5) / kGrid});
    if (colour == kNone) continue;
    ++covered;
    for (std::size_t part = 0; part < sums.size(); ++part) {
      sums[part] += colour >> (8 * part) & 0xFF;
    }
  }
  if (covered == 0) return 0;
  std::uint32_t pixel = covered * 0xFF / kPoints << 24;
  for (std::size_t part = 0; part < sums.size(); ++part) pixel |= sums[part] / covered << 8 * part;
  return pixel;
}

}  // namespace

std::vector<std::uint32_t> DrawIcon(IconShape shape, int size) {
  const double extent = kUnits / size;
  std::vector<std::uint32_t> pixels;
  pixels.reserve(static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      pixels.push_back(
          PixelOf(kShapes[static_cast<std::size_t>(shape)], x * extent, y * extent, extent));
    }
  }
  return pixels;
}

}  // namespace tessary
