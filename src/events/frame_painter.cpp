#include "events/frame_painter.h"

#include <algorithm>

namespace glimra::events {

namespace {

using lighting::kBitmapColumns;
using lighting::kBitmapRows;

/// Puts paint on a working bitmap.
struct Painter {
    LedBitmap& working;
    const LedBitmap& profile;

    void operator()(std::monostate) const {}
    void operator()(const Bands& bands) const {
        for (int band = 0; band < bands.count; ++band)
            if ((bands.chosen >> band & 1U) != 0)
                paintBand(working, bands.count, band, bands.color);
    }
    void operator()(const Row& row) const {
        if (row.row >= 0 && row.row < static_cast<int>(kBitmapRows))
            paintCells(row.row, 0, kBitmapColumns, 1, row.color);
    }
    void operator()(const AlternateCells& cells) const {
        paintCells(cells.row, static_cast<std::size_t>(cells.row) % 2, kBitmapColumns - 1, 2, cells.color);
    }
    void operator()(const ProfileRow& row) const {
        const auto start = static_cast<std::ptrdiff_t>(row.row) * static_cast<std::ptrdiff_t>(kRowBytes);
        std::copy_n(profile.begin() + start, kRowBytes, working.begin() + start);
    }

private:
    void paintCells(int row, std::size_t first, std::size_t end, std::size_t next, Rgb color) const {
        for (std::size_t column = first; column < end; column += next)
            paintOpaqueCell(working,
                            static_cast<std::size_t>(row) * kRowBytes + column * lighting::kBitmapBytesPerKey,
                            color);
    }
};

} // namespace

void paintFrame(LedBitmap& working, const Frame& frame, const LedBitmap& profile) {
    if (frame.ground == Ground::Profile)
        working = profile;
    if (frame.ground == Ground::White)
        working = lighting::blankBitmap();
    for (const Paint& paint : frame.paints)
        std::visit(Painter{working, profile}, paint);
}

} // namespace glimra::events
