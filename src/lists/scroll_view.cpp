// SPDX-License-Identifier: MIT
// The calls ScrollView_*.
#include <memory>

#include "kelvane/lists.h"
#include "lists/handle.h"
#include "lists/scroll.h"

struct iscrollview_s {
    std::shared_ptr<lists::ScrollArea> widget;
};

using lists::ScrollArea;
using lists::with;

iscrollview *ScrollView_Create(kv_scrollproc draw, void *context) {
    return ground::guarded(nullptr, [&] {
        auto handle = std::make_unique<iscrollview>();
        handle->widget = std::make_shared<ScrollArea>(draw, context);
        return handle.release();
    });
}

void ScrollView_Destroy(iscrollview *view) {
    delete view;
}

void ScrollView_SetRect(iscrollview *view, const irect *place) {
    with(view, [&](ScrollArea &v) { v.set_place(place ? *place : irect{}); });
}

void ScrollView_SetContent(iscrollview *view, int height, int line) {
    with(view, [&](ScrollArea &v) { v.set_content(height, line); });
}

int ScrollView_GetWidth(const iscrollview *view) {
    return view ? view->widget->content_w() : 0;
}

void ScrollView_Draw(iscrollview *view) {
    with(view, [](ScrollArea &v) { v.draw(); });
}

int ScrollView_HandleEvent(iscrollview *view, int type, int par1, int par2) {
    bool is_taken = false;
    with(view, [&](ScrollArea &v) { is_taken = v.handle(type, par1, par2); });
    return is_taken ? 1 : 0;
}

int ScrollView_GetTop(const iscrollview *view) {
    return view ? view->widget->top() : 0;
}

void ScrollView_SetTop(iscrollview *view, int top) {
    with(view, [&](ScrollArea &v) { v.set_top(top); });
}
