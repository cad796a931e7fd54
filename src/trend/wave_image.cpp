#include "trend/wave_image.h"

#include <QImage>
#include <QPaintEngine>
#include <QRegion>
#include <QTransform>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace recscope {

namespace {

// The painter's aliased one-pixel line, for a line that stays on one pixel
// column or row of the device: positions are taken in 26.6 fixed point by
// truncation, the square caps reach half a pixel past each end, and the pixels
// lit are those whose fixed-point floor lies between the ends. A line whose two
// points are equal is a single point at the rounded position.
int To26Dot6(double v) { return static_cast<int>(v * 64.); }

// A run of pixels along one lane (a pixel column when lanes are columns, else a
// pixel row), ends included.
struct Span {
  int lane;
  int from;
  int to;
};

// A line that lights a run along a pixel column (lane x, rows from..to) or a
// pixel row (lane y, columns from..to); a point is a run of one either way.
struct Run {
  int lane, from, to;
  int index;  // of the line in its channel; -1 for a point
};

// Any other line, and the box of pixels it may light: lanes lane0..lane1 and
// positions along them from..to, ends included.
struct Other {
  int lane0, lane1, from, to;
  QLine line;
};

struct ChannelWork {
  std::vector<Run> columnRuns, rowRuns;
  std::vector<Span> spans;       // runs along the lanes: written here
  std::vector<Other> others;     // lit unless covered
  std::vector<Span> pieces;      // the spans' pixels not covered by later channels
  std::vector<QLine> survivors;  // the other lines that may still show: lit here
  void Clear() {
    columnRuns.clear();
    rowRuns.clear();
    spans.clear();
    others.clear();
    pieces.clear();
    survivors.clear();
  }
};

// Pixels certainly painted by the channels drawn so far (in reverse order): one
// run per lane.
struct Cover {
  std::vector<int> lo, hi;
  explicit Cover(int lanes)
      : lo(static_cast<std::size_t>(lanes), 0), hi(static_cast<std::size_t>(lanes), -1) {}
  int lanes() const { return static_cast<int>(lo.size()); }
  void Add(const Span &s) {
    if (s.lane < 0 || s.lane >= lanes()) return;
    int &l = lo[static_cast<std::size_t>(s.lane)];
    int &h = hi[static_cast<std::size_t>(s.lane)];
    if (l > h) {
      l = s.from;
      h = s.to;
    } else if (s.from <= h + 1 && s.to >= l - 1) {
      l = std::min(l, s.from);
      h = std::max(h, s.to);
    } else if (s.to - s.from > h - l) {
      l = s.from;
      h = s.to;
    }
  }
  bool Covers(const Other &r) const {
    if (r.lane0 < 0 || r.lane1 >= lanes()) return false;
    for (int lane = r.lane0; lane <= r.lane1; ++lane)
      if (lo[static_cast<std::size_t>(lane)] > r.from || hi[static_cast<std::size_t>(lane)] < r.to)
        return false;
    return true;
  }
  // The parts of `s` outside this lane's run.
  template <typename Out>
  void Uncovered(const Span &s, Out out) const {
    int l = 1, h = 0;
    if (s.lane >= 0 && s.lane < lanes()) {
      l = lo[static_cast<std::size_t>(s.lane)];
      h = hi[static_cast<std::size_t>(s.lane)];
    }
    if (l > h || s.to < l || s.from > h) {
      out(s);
      return;
    }
    if (s.from < l) out(Span{s.lane, s.from, l - 1});
    if (s.to > h) out(Span{s.lane, h + 1, s.to});
  }
};

// The painter's aliased one-pixel line between two device points, square caps,
// lit pixel by pixel: the ends are first shortened to the bounds (xmin..xmax,
// ymin..ymax) along the line, then taken in 26.6 fixed point; the line steps
// along its longer axis, one pixel per step, half a pixel past each end, and the
// other axis follows in 16.16 fixed point. Pixels outside `clip` are not lit.
struct LineBounds {
  double xmin, xmax, ymin, ymax;
};

// Shortens the line to the bounds; false when nothing of it is left.
bool ClipLine(const LineBounds &b, double &x1, double &y1, double &x2, double &y2) {
  if (x1 < b.xmin) {
    if (x2 <= b.xmin) return false;
    y1 += (y2 - y1) / (x2 - x1) * (b.xmin - x1);
    x1 = b.xmin;
  } else if (x1 > b.xmax) {
    if (x2 >= b.xmax) return false;
    y1 += (y2 - y1) / (x2 - x1) * (b.xmax - x1);
    x1 = b.xmax;
  }
  if (x2 < b.xmin) {
    y2 += (y2 - y1) / (x2 - x1) * (b.xmin - x2);
    x2 = b.xmin;
  } else if (x2 > b.xmax) {
    y2 += (y2 - y1) / (x2 - x1) * (b.xmax - x2);
    x2 = b.xmax;
  }
  if (y1 < b.ymin) {
    if (y2 <= b.ymin) return false;
    x1 += (x2 - x1) / (y2 - y1) * (b.ymin - y1);
    y1 = b.ymin;
  } else if (y1 > b.ymax) {
    if (y2 >= b.ymax) return false;
    x1 += (x2 - x1) / (y2 - y1) * (b.ymax - y1);
    y1 = b.ymax;
  }
  if (y2 < b.ymin) {
    x2 += (x2 - x1) / (y2 - y1) * (b.ymin - y2);
    y2 = b.ymin;
  } else if (y2 > b.ymax) {
    x2 += (x2 - x1) / (y2 - y1) * (b.ymax - y2);
    y2 = b.ymax;
  }
  return true;
}

std::int64_t FixedRatio(int a, int b) { return static_cast<std::int64_t>(a) * (1 << 16) / b; }

template <typename Plot>
void RasterLine(const LineBounds &bounds, double rx1, double ry1, double rx2, double ry2,
                Plot plot) {
  if (!ClipLine(bounds, rx1, ry1, rx2, ry2)) return;
  int x1 = To26Dot6(rx1), y1 = To26Dot6(ry1), x2 = To26Dot6(rx2), y2 = To26Dot6(ry2);
  const int dx = std::abs(x2 - x1), dy = std::abs(y2 - y1);
  if (dx < dy) {
    if (y1 > y2) {
      std::swap(y1, y2);
      std::swap(x1, x2);
    }
    const std::int64_t xinc = FixedRatio(x2 - x1, y2 - y1);
    std::int64_t x = static_cast<std::int64_t>(x1) * (1 << 10);
    y1 -= 32;
    x -= xinc >> 1;
    y2 += 32;
    int y = (y1 + 32) >> 6;
    const int ys = (y2 + 32) >> 6;
    const int round = xinc > 0 ? 32 : 0;
    if (y == ys) return;
    x += ((static_cast<std::int64_t>(y) * 64 + round - y1) * xinc) >> 6;
    do {
      plot(static_cast<int>(x >> 16), y);
      x += xinc;
    } while (++y < ys);
  } else {
    if (!dx) return;
    if (x1 > x2) {
      std::swap(x1, x2);
      std::swap(y1, y2);
    }
    const std::int64_t yinc = FixedRatio(y2 - y1, x2 - x1);
    std::int64_t y = static_cast<std::int64_t>(y1) * (1 << 10);
    x1 -= 32;
    y -= yinc >> 1;
    x2 += 32;
    int x = (x1 + 32) >> 6;
    const int xs = (x2 + 32) >> 6;
    const int round = yinc > 0 ? 32 : 0;
    if (x == xs) return;
    y += ((static_cast<std::int64_t>(x) * 64 + round - x1) * yinc) >> 6;
    do {
      plot(x, static_cast<int>(y >> 16));
      y += yinc;
    } while (++x < xs);
  }
}

// Pixels of one colour down a pixel column, ends included.
inline void WriteColumn(uchar *bits, qsizetype bpl, int x, int from, int to, quint32 colour) {
  uchar *at = bits + static_cast<qsizetype>(from) * bpl + static_cast<qsizetype>(x) * 4;
  for (int y = from; y <= to; ++y, at += bpl) *reinterpret_cast<quint32 *>(at) = colour;
}

// Column writes of a channel with at least this many pixels go a band of rows at
// a time.
constexpr long long kBandedPixels = 1 << 16;
constexpr int kBandRows = 32;

// The device rectangle the painter's clip lets through, found by letting the
// painter fill a row and a column across it: the only way to be sure of how the
// painter rounds a clip given in its own coordinates. The pixels it touches are
// put back as they were.
bool ProbeClip(QPainter &painter, QImage &image, QRect &clip) {
  const int W = image.width(), H = image.height();
  clip = QRect(0, 0, W, H);
  if (!painter.hasClipping()) return true;
  QRegion region = painter.clipRegion();
  if (region.rectCount() != 1) return false;
  const QTransform &t = painter.deviceTransform();
  bool invertible = false;
  QTransform back = t.inverted(&invertible);
  if (!invertible) return false;
  QRectF guess = t.mapRect(QRectF(region.boundingRect()));
  const int row = std::clamp(static_cast<int>(guess.center().y()), 0, H - 1);
  const int col = std::clamp(static_cast<int>(guess.center().x()), 0, W - 1);
  const int r0 = std::max(0, row - 2), r1 = std::min(H - 1, row + 2);
  const int c0 = std::max(0, col - 2), c1 = std::min(W - 1, col + 2);
  uchar *bits = const_cast<uchar *>(image.constBits());
  const qsizetype bpl = image.bytesPerLine();
  auto px = [&](int x, int y) { return reinterpret_cast<quint32 *>(bits + y * bpl) + x; };

  std::vector<quint32> rows(static_cast<std::size_t>(r1 - r0 + 1) * W);
  std::vector<quint32> cols(static_cast<std::size_t>(c1 - c0 + 1) * H);
  for (int y = r0; y <= r1; ++y) std::copy(px(0, y), px(0, y) + W, &rows[(y - r0) * W]);
  for (int y = 0; y < H; ++y)
    for (int x = c0; x <= c1; ++x) cols[(x - c0) * H + y] = *px(x, y);
  for (int y = r0; y <= r1; ++y) std::fill(px(0, y), px(0, y) + W, 0u);
  for (int y = 0; y < H; ++y)
    for (int x = c0; x <= c1; ++x) *px(x, y) = 0u;

  painter.save();
  painter.setOpacity(1.0);
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
  painter.fillRect(back.mapRect(QRectF(-4, row + 0.25, W + 8, 0.5)), QColor(0, 0, 0));
  painter.fillRect(back.mapRect(QRectF(col + 0.25, -4, 0.5, H + 8)), QColor(0, 0, 0));
  painter.restore();

  auto run = [](auto value, int n, int &first, int &last) {
    first = -1;
    last = -2;
    for (int i = 0; i < n; ++i) {
      if (value(i) != 0xFF000000u) continue;
      if (first < 0)
        first = i;
      else if (last != i - 1)
        return false;  // two runs: not a rectangle
      last = i;
    }
    return first >= 0;
  };
  int x0 = 0, x1 = 0, y0 = 0, y1 = 0;
  bool ok = run([&](int i) { return *px(i, row); }, W, x0, x1) &&
            run([&](int i) { return *px(col, i); }, H, y0, y1);

  for (int y = r0; y <= r1; ++y) std::copy(&rows[(y - r0) * W], &rows[(y - r0) * W] + W, px(0, y));
  for (int y = 0; y < H; ++y)
    for (int x = c0; x <= c1; ++x) *px(x, y) = cols[(x - c0) * H + y];
  if (!ok) return false;
  clip = QRect(QPoint(x0, y0), QPoint(x1, y1));
  return true;
}

}  // namespace

bool DrawWavesOnImage(QPainter &painter, const std::vector<WaveLines> &channels,
                      WaveImageCounts *counts) {
  WaveImageCounts tally;
  if (counts) *counts = tally;
  QPaintDevice *device = painter.device();
  if (!device || device->devType() != QInternal::Image || !painter.paintEngine() ||
      painter.paintEngine()->type() != QPaintEngine::Raster)
    return false;
  QImage &image = *static_cast<QImage *>(device);
  if (image.format() != QImage::Format_RGB32 &&
      image.format() != QImage::Format_ARGB32_Premultiplied)
    return false;
  // Shared pixel data would be copied on a write: the painter keeps drawing into
  // the pixels it started with, so leave such an image to the painter.
  if (!image.isDetached() || image.width() < 1 || image.height() < 1) return false;
  const QTransform &t = painter.deviceTransform();
  if (t.type() > QTransform::TxScale || t.m11() <= 0 || t.m22() <= 0) return false;
  if (painter.testRenderHint(QPainter::Antialiasing) || painter.opacity() != 1.0 ||
      painter.compositionMode() != QPainter::CompositionMode_SourceOver)
    return false;
  for (const WaveLines &ch : channels)
    if (ch.colour.alpha() != 255) return false;
  QRect clip;
  if (!ProbeClip(painter, image, clip)) return false;
  clip &= QRect(0, 0, image.width(), image.height());

  const int W = image.width(), H = image.height();
  // The painter leaves out lines beyond these bounds altogether and shortens the
  // rest to them (device rectangle and a pixel more on each side).
  const double xmin = -1, xmax = W + 1, ymin = -1, ymax = H + 1;
  const LineBounds bounds{xmin, xmax, ymin, ymax};

  // First pass: each line in device fixed point, sorted into runs along a pixel
  // column, runs along a pixel row, and any other line (with the box it may light).
  const double m11 = t.m11(), m22 = t.m22(), dx = t.dx(), dy = t.dy();
  // Kept from call to call: a redraw then finds its memory ready.
  thread_local std::vector<ChannelWork> workspace;
  if (workspace.size() < channels.size()) workspace.resize(channels.size());
  long long columnCount = 0, rowCount = 0;
  for (std::size_t c = 0; c < channels.size(); ++c) {
    ChannelWork &w = workspace[c];
    w.Clear();
    const std::vector<QLine> &lines = channels[c].lines;
    for (int index = 0; index < static_cast<int>(lines.size()); ++index) {
      const QLine &line = lines[static_cast<std::size_t>(index)];
      // As the painter maps a point with a scale-only transform.
      double x1 = m11 * line.x1() + dx, y1 = m22 * line.y1() + dy;
      double x2 = m11 * line.x2() + dx, y2 = m22 * line.y2() + dy;
      // Far beyond the image the fixed-point forms below would overflow: leave
      // such a picture to the painter.
      constexpr double kFar = 1 << 20;
      if (std::abs(x1) > kFar || std::abs(y1) > kFar || std::abs(x2) > kFar || std::abs(y2) > kFar)
        return false;
      if (line.p1() == line.p2()) {
        const int x = qRound(x1), y = qRound(y1);
        w.columnRuns.push_back({x, y, y, -1});
        continue;
      }
      if (x1 == x2 || y1 == y2) {
        // Along an axis: the painter's shortening to its bounds only moves the
        // ends along it.
        if (x1 == x2) {
          if ((x1 < xmin) || (x1 > xmax) || (y1 < ymin && y2 <= ymin) ||
              (y1 > ymax && y2 >= ymax) || (y2 < ymin && y1 <= ymin) || (y2 > ymax && y1 >= ymax))
            continue;
          y1 = std::clamp(y1, ymin, ymax);
          y2 = std::clamp(y2, ymin, ymax);
        } else {
          if ((y1 < ymin) || (y1 > ymax) || (x1 < xmin && x2 <= xmin) ||
              (x1 > xmax && x2 >= xmax) || (x2 < xmin && x1 <= xmin) || (x2 > xmax && x1 >= xmax))
            continue;
          x1 = std::clamp(x1, xmin, xmax);
          x2 = std::clamp(x2, xmin, xmax);
        }
      }
      const int fx1 = To26Dot6(x1), fy1 = To26Dot6(y1), fx2 = To26Dot6(x2), fy2 = To26Dot6(y2);
      if (fx1 == fx2 && fy1 == fy2) continue;  // nothing lit
      if (fx1 == fx2 && x1 == x2) {
        w.columnRuns.push_back({fx1 >> 6, std::min(fy1, fy2) >> 6, std::max(fy1, fy2) >> 6, index});
      } else if (fy1 == fy2 && y1 == y2) {
        w.rowRuns.push_back({fy1 >> 6, std::min(fx1, fx2) >> 6, std::max(fx1, fx2) >> 6, index});
      } else {
        // Other lines: the caps and the stepping stay within a pixel of the ends.
        w.others.push_back({(std::min(fx1, fx2) >> 6) - 1, (std::max(fx1, fx2) >> 6) + 1,
                            (std::min(fy1, fy2) >> 6) - 1, (std::max(fy1, fy2) >> 6) + 1, line});
      }
    }
    columnCount += static_cast<long long>(w.columnRuns.size());
    rowCount += static_cast<long long>(w.rowRuns.size());
  }

  // Lanes run the way most runs do: pixel columns for a horizontal trend, rows
  // for a vertical one. Runs the other way join the other lines. Boxes are kept
  // in the lanes' terms: lanes first, positions along them second.
  const bool lanesAreColumns = columnCount >= rowCount;
  const int laneCount = lanesAreColumns ? W : H;
  const int clipLane0 = lanesAreColumns ? clip.left() : clip.top();
  const int clipLane1 = lanesAreColumns ? clip.right() : clip.bottom();
  const int clipFrom = lanesAreColumns ? clip.top() : clip.left();
  const int clipTo = lanesAreColumns ? clip.bottom() : clip.right();
  for (std::size_t c = 0; c < channels.size(); ++c) {
    ChannelWork &w = workspace[c];
    if (lanesAreColumns) {
      for (const Run &r : w.columnRuns) w.spans.push_back({r.lane, r.from, r.to});
      for (const Run &r : w.rowRuns)
        w.others.push_back({r.from, r.to, r.lane, r.lane, channels[c].lines[r.index]});
    } else {
      for (Other &o : w.others) {
        std::swap(o.lane0, o.from);
        std::swap(o.lane1, o.to);
      }
      for (const Run &r : w.rowRuns) w.spans.push_back({r.lane, r.from, r.to});
      for (const Run &r : w.columnRuns) {
        if (r.index < 0)
          w.spans.push_back({r.from, r.lane, r.lane});
        else
          w.others.push_back({r.from, r.to, r.lane, r.lane, channels[c].lines[r.index]});
      }
    }
  }

  // Second pass, last channel first: what of each channel can still show.
  Cover cover(laneCount);
  for (std::size_t k = channels.size(); k-- > 0;) {
    ChannelWork &w = workspace[k];
    for (const Span &s : w.spans) {
      if (s.lane < clipLane0 || s.lane > clipLane1) continue;
      cover.Uncovered(s, [&](Span piece) {
        piece.from = std::max(piece.from, clipFrom);
        piece.to = std::min(piece.to, clipTo);
        if (piece.from <= piece.to) w.pieces.push_back(piece);
      });
    }
    // A channel's own spans are its own colour: they may hide its other lines too.
    for (const Span &s : w.spans) cover.Add(s);
    for (const Other &o : w.others) {
      if (cover.Covers(o)) {
        ++tally.culled;
        continue;
      }
      w.survivors.push_back(o.line);
    }
    tally.spans += static_cast<long long>(w.spans.size());
  }

  // Third pass, in drawing order: the pieces straight into the pixels, the
  // survivors lit pixel by pixel.
  uchar *bits = const_cast<uchar *>(image.constBits());
  const qsizetype bpl = image.bytesPerLine();
  for (std::size_t c = 0; c < channels.size(); ++c) {
    const ChannelWork &w = workspace[c];
    const quint32 colour = 0xFF000000u | (channels[c].colour.rgb() & 0x00FFFFFFu);
    long long pixels = 0;
    for (const Span &p : w.pieces) pixels += p.to - p.from + 1;
    tally.pixelsWritten += pixels;
    if (!lanesAreColumns) {
      for (const Span &p : w.pieces) {
        quint32 *row = reinterpret_cast<quint32 *>(bits + static_cast<qsizetype>(p.lane) * bpl);
        std::fill(row + p.from, row + p.to + 1, colour);
      }
    } else if (pixels < kBandedPixels) {
      for (const Span &p : w.pieces) WriteColumn(bits, bpl, p.lane, p.from, p.to, colour);
    } else {
      // Many long columns: written a band of rows at a time, so that the pixels
      // of neighbouring columns are written while their memory is at hand. The
      // pieces of a channel all have its colour, so their order does not matter.
      for (int band = clip.top(); band <= clip.bottom(); band += kBandRows) {
        const int bandEnd = std::min(band + kBandRows - 1, clip.bottom());
        for (const Span &p : w.pieces) {
          const int from = std::max(p.from, band), to = std::min(p.to, bandEnd);
          if (from <= to) WriteColumn(bits, bpl, p.lane, from, to, colour);
        }
      }
    }
    for (const QLine &line : w.survivors) {
      RasterLine(bounds, m11 * line.x1() + dx, m22 * line.y1() + dy, m11 * line.x2() + dx,
                 m22 * line.y2() + dy, [&](int x, int y) {
                   if (x < clip.left() || x > clip.right() || y < clip.top() || y > clip.bottom())
                     return;
                   *(reinterpret_cast<quint32 *>(bits + static_cast<qsizetype>(y) * bpl) + x) =
                       colour;
                 });
    }
    tally.lit += static_cast<long long>(w.survivors.size());
  }
  if (!channels.empty()) painter.setPen(QPen(channels.back().colour, 0));
  if (counts) *counts = tally;
  return true;
}

}  // namespace recscope
