// SPDX-License-Identifier: MIT
// libtiff, where opening it fails for a while.
#include "image/tiff_library.h"

#include <gtest/gtest.h>

namespace {
bool refuses = false;
}

extern "C" {
void *__real_dlopen(const char *name, int flags);
void *__wrap_dlopen(const char *name, int flags) {
    return refuses ? nullptr : __real_dlopen(name, flags);
}
}

TEST(TiffLibrary, AFailureToLoadItIsNotRemembered) {
    refuses = true;
    EXPECT_EQ(image::tiff_library(), nullptr);
    refuses = false;
    const image::TiffLibrary *const loaded = image::tiff_library();
    ASSERT_NE(loaded, nullptr);
    refuses = true;
    EXPECT_EQ(image::tiff_library(), loaded) << "loaded once";
}
