// SPDX-License-Identifier: MIT
// Picture files, and bitmaps in memory.
#include <algorithm>
#include <cstdlib>
#include <minizip/unzip.h>

#include "failures/device.h"
#include "failures/sessions.h"
#include "kelvane/bitmaps.h"
#include "kelvane/canvas.h"
#include "kelvane/pictures.h"
#include "raster/bitmap_ptr.h"
#include "support/zip_file.h"
#include "unit/picture_files.h"

namespace failures {
namespace {

using raster::BitmapPtr;

BitmapPtr shades(int w, int h) {
    BitmapPtr bm(NewBitmap(w, h));
    for (size_t i = 0; i < raster::pixel_bytes(*bm); ++i) bm->data[i] = static_cast<uint8_t>(i * 7);
    return bm;
}

class Pictures : public Session {
  public:
    Pictures() {
        SavePNG("p.png", bm_.get()), keep("p.png");
        SaveJPEG("p.jpg", bm_.get(), 80), keep("p.jpg");
    }

    bool run() override {
        const BitmapPtr loaded[] = {BitmapPtr(LoadPNG("p.png", 1)),
                                    BitmapPtr(LoadPNGStretch("p.png", 30, 30, 1, 0)),
                                    BitmapPtr(LoadJPEG("p.jpg", 20, 20, 100, 100, 1)),
                                    BitmapPtr(LoadPicture("p.png", 20, 20, PICTURE_COVER, 1)),
                                    BitmapPtr(LoadPicture("p.jpg", 20, 20, PICTURE_FIT, 0))};
        const bool saved =
            SavePNG("p.png", bm_.get()) == 1 && SaveJPEG("p.jpg", bm_.get(), 80) == 1;
        return saved && std::ranges::all_of(loaded, [](const auto &bm) { return bm != nullptr; });
    }

  private:
    Device device_;
    BitmapPtr bm_ = shades(40, 30);
};

// libtiff uses the null that a failed allocation gave it.
class TiffPictures : public Session {
  public:
    TiffPictures() {
        write_tiff("p.tif", 16, 12, {.compression = COMPRESSION_LZW}, Bytes(16 * 12, 100));
        keep("p.tif");
    }

    bool run() override { return BitmapPtr(LoadTIFF("p.tif", 20, 20, 100, 100, 0)) != nullptr; }

  private:
    Device device_;
};

class Bitmaps : public Session {
  public:
    Bitmaps() {
        SaveBitmap("b.bmp", bm_.get()), keep("b.bmp");
        write_zip("b.zip", {{"b.bmp", read_file("b.bmp")}});
        zip_ = unzOpen("b.zip");
    }
    ~Bitmaps() override { unzClose(zip_); }

    bool run() override {
        ClearScreen();
        BitmapPtr copy(CopyBitmap(bm_.get())), screen(BitmapFromScreen(0, 0, 50, 50)),
            turned(BitmapFromScreenR(0, 0, 50, 40, 1));
        MirrorBitmap(copy.get(), 3);
        ibitmap *with_hole = copy.release();
        SetTransparentColor(&with_hole, 0);
        copy.reset(with_hole);
        for (const ibitmap *bm : {copy.get(), screen.get(), turned.get()})
            DrawBitmapRect(10, 10, 90, 70, bm, 0);
        StretchBitmap(10, 100, 70, 80, bm_.get(), 0);
        DitherArea(0, 0, 200, 200, 4, 1);
        QuickFloyd16Dither(0, 0, 200, 200);
        const bool saved = SaveBitmap("b.bmp", bm_.get()) == 1;
        BitmapPtr loaded(LoadBitmap("b.bmp")), member(zLoadBitmap(zip_, "B.BMP"));
        return saved && copy && screen && turned && loaded && member;
    }

  private:
    Device device_;
    BitmapPtr bm_ = shades(40, 30);
    unzFile zip_;
};

constexpr Area areas_here[] = {{"Pictures", make<Pictures>},
                               {"TiffPictures", make<TiffPictures>, false},
                               {"Bitmaps", make<Bitmaps>}};

} // namespace

constinit const std::span<const Area> picture_areas = areas_here;

} // namespace failures
