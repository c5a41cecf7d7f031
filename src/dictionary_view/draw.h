// SPDX-License-Identifier: MIT
// How the view looks. Everything is drawn on the screen, whatever the application draws on.
#pragma once

#include "dictionary_view/view.h"

namespace dictionary_view {

void draw_view(const View &v);
void draw_tools(const View &v);
// The panes below the toolbar.
void draw_body(const View &v);
void draw_article(const View &v);

} // namespace dictionary_view
