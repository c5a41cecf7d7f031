// SPDX-License-Identifier: MIT
// libtiff, opened with the first TIFF file. It brings eight other libraries along, and what they
// take to load would be paid at every start of every application.
#pragma once

#include <tiffio.h>

namespace image {

// The functions of libtiff that are used, by their own names.
struct TiffLibrary {
    decltype(&::TIFFClose) TIFFClose;
    decltype(&::TIFFFdOpenExt) TIFFFdOpenExt;
    decltype(&::TIFFGetField) TIFFGetField;
    decltype(&::TIFFGetFieldDefaulted) TIFFGetFieldDefaulted;
    decltype(&::TIFFGetStrileByteCount) TIFFGetStrileByteCount;
    decltype(&::TIFFIsTiled) TIFFIsTiled;
    decltype(&::TIFFNumberOfStrips) TIFFNumberOfStrips;
    decltype(&::TIFFOpenOptionsAlloc) TIFFOpenOptionsAlloc;
    decltype(&::TIFFOpenOptionsFree) TIFFOpenOptionsFree;
    decltype(&::TIFFOpenOptionsSetErrorHandlerExtR) TIFFOpenOptionsSetErrorHandlerExtR;
    decltype(&::TIFFOpenOptionsSetMaxSingleMemAlloc) TIFFOpenOptionsSetMaxSingleMemAlloc;
    decltype(&::TIFFOpenOptionsSetWarningHandlerExtR) TIFFOpenOptionsSetWarningHandlerExtR;
    decltype(&::TIFFRGBAImageBegin) TIFFRGBAImageBegin;
    decltype(&::TIFFRGBAImageEnd) TIFFRGBAImageEnd;
    decltype(&::TIFFRGBAImageGet) TIFFRGBAImageGet;
    decltype(&::TIFFReadRawStrip) TIFFReadRawStrip;
    decltype(&::TIFFReadScanline) TIFFReadScanline;
    decltype(&::TIFFScanlineSize) TIFFScanlineSize;
};

// Null when libtiff is not installed, lacks one of them, or cannot be loaded now: the next call
// tries again.
const TiffLibrary *tiff_library();

} // namespace image
