// SPDX-License-Identifier: MIT
// The window device: one GTK+ 2 window stands in for the panel, the keys and the touch screen.
// Everything runs on the application's thread, inside pump() or a call that pumps.
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iterator>
#include <utility>

#include <poll.h>

#include <gdk/gdkkeysyms.h>
#include <gdk/gdkx.h>
#include <gtk/gtk.h>

#include "ground/guard.h"
#include "hw_linux/control.h"
#include "hw_linux/device.h"
#include "hw_linux/input.h"
#include "hw_linux/shown.h"
#include "hw_linux/tasks/session.h"
#include "hw_linux/window_menu.h"
#include "kelvane/events.h"

namespace {

constexpr guint panel_key = GDK_F9; // shows updates the way a panel of e-paper does, or at once

enum Button : guint { LEFT_BUTTON = 1, RIGHT_BUTTON = 3 };

// The buffer outlives the widgets: what is drawn after the window was closed goes nowhere, safely.
struct Window {
    GtkWidget *top = nullptr;
    GtkWidget *area = nullptr;
    GtkWidget *menu = nullptr; // the one opened last
    GdkPixbuf *pixbuf = nullptr;
    int x = 0, y = 0;       // where it was when it was hidden
    bool presented = false; // until then the panel is white, and the server paints that by itself
} window;

void check_pixbuf(GdkPixbuf *pixbuf) {
    const int n_channels = gdk_pixbuf_get_n_channels(pixbuf);
    g_assert(gdk_pixbuf_get_colorspace(pixbuf) == GDK_COLORSPACE_RGB);
    g_assert(gdk_pixbuf_get_bits_per_sample(pixbuf) == 8);
    g_assert(gdk_pixbuf_get_has_alpha(pixbuf) == TRUE);
    g_assert(n_channels == 4);
}

// The buffer is opaque throughout, so it is drawn without blending.
gboolean on_expose(GtkWidget *area, GdkEventExpose *event, gpointer) {
    if (!window.presented) return TRUE;
    GdkPixbuf *pixbuf = window.pixbuf;
    const GdkRectangle whole = {0, 0, gdk_pixbuf_get_width(pixbuf), gdk_pixbuf_get_height(pixbuf)};
    GdkRectangle part;
    if (!gdk_rectangle_intersect(&whole, &event->area, &part)) return TRUE;
    const int stride = gdk_pixbuf_get_rowstride(pixbuf);
    const guchar *pixels = gdk_pixbuf_get_pixels(pixbuf) + part.y * stride + part.x * 4;
    gdk_draw_rgb_32_image(area->window, area->style->black_gc, part.x, part.y, part.width,
                          part.height, GDK_RGB_DITHER_NONE, pixels, stride);
    return TRUE;
}

void on_realize(GtkWidget *area, gpointer) {
    gdk_window_set_background(area->window, &area->style->white);
}

// The buffer keeps its size, whatever the window manager makes of the window.
gboolean on_configure(GtkWidget *, GdkEventConfigure *, gpointer) {
    return TRUE;
}

// Whoever has the keyboard from now on is told when its keys go up.
gboolean on_focus_out(GtkWidget *, GdkEventFocus *, gpointer) {
    hw::release_keys();
    return FALSE;
}

// What a key types that stands for none of the device's; 0 for nothing.
unsigned character_of(const GdkEventKey &event) {
    if (event.state & (GDK_CONTROL_MASK | GDK_MOD1_MASK)) return 0;
    if (event.keyval == GDK_BackSpace) return '\b';
    const guint32 character = gdk_keyval_to_unicode(event.keyval);
    return character >= ' ' && character != 0x7F ? character : 0;
}

gboolean on_key(GtkWidget *, GdkEventKey *event, gpointer) {
    if (event->keyval == 0) return FALSE;
    const bool is_down = event->type == GDK_KEY_PRESS;
    if (event->keyval == panel_key) {
        if (is_down) hw::switch_panel();
        return TRUE;
    }
    const int bit = hw::find_workstation_bit(event->keyval);
    hw::set_key_bit(bit, is_down);
    if (bit < 0 && is_down) hw::type_character(character_of(*event));
    return TRUE;
}

void drop_menu() {
    if (!window.menu) return;
    gtk_widget_destroy(window.menu);
    g_object_unref(std::exchange(window.menu, nullptr));
}

// Made anew each time: the start need not wait for it, and its marks show the present state. It
// takes the keyboard and the pointer away.
void popup_menu(const GdkEventButton &event) {
    drop_menu();
    hw::release_keys();
    hw::lift_pointer();
    window.menu = ground::guarded(nullptr, hw::make_window_menu);
    if (!window.menu) return;
    gtk_menu_popup(GTK_MENU(window.menu), nullptr, nullptr, nullptr, nullptr, event.button,
                   event.time);
}

// A double click reaches the handler twice, as a press and as a double press; the press counts.
gboolean on_button_press(GtkWidget *, GdkEventButton *event, gpointer) {
    if (event->type != GDK_BUTTON_PRESS) return TRUE;
    if (event->button == LEFT_BUTTON) {
        hw::pointer_input(EVT_POINTERDOWN, static_cast<int>(event->x), static_cast<int>(event->y));
    } else if (event->button == RIGHT_BUTTON) {
        popup_menu(*event);
    }
    return TRUE;
}

gboolean on_button_release(GtkWidget *, GdkEventButton *event, gpointer) {
    if (event->button != LEFT_BUTTON) return TRUE;
    hw::pointer_input(EVT_POINTERUP, static_cast<int>(event->x), static_cast<int>(event->y));
    return TRUE;
}

// A hint stands for all the moves since the last one, so the server is asked where the pointer is
// by now, which also lets it send the next hint. A drag that has ended meanwhile keeps the place
// of the hint.
gboolean on_motion(GtkWidget *, GdkEventMotion *event, gpointer) {
    int x = static_cast<int>(event->x), y = static_cast<int>(event->y);
    if (event->is_hint) {
        int now_x, now_y;
        GdkModifierType now;
        gdk_window_get_pointer(event->window, &now_x, &now_y, &now);
        if (now & GDK_BUTTON1_MASK) x = now_x, y = now_y;
    }
    if (event->state & GDK_BUTTON1_MASK) hw::pointer_input(EVT_POINTERMOVE, x, y);
    return TRUE;
}

// Closed by the user: the widgets are already on their way out.
void quit(GtkWidget *, gpointer) {
    window.top = window.area = nullptr;
    hw::window_closed();
}

GtkWidget *make_area(const hw::WindowSpec &spec) {
    GtkWidget *area = gtk_drawing_area_new();
    gtk_widget_set_size_request(area, spec.width, spec.height);
    gtk_widget_set_double_buffered(area, FALSE); // every pixel is drawn from a buffer anyway
    gtk_widget_add_events(area, GDK_EXPOSURE_MASK | GDK_POINTER_MOTION_MASK |
                                    GDK_POINTER_MOTION_HINT_MASK | GDK_BUTTON_PRESS_MASK |
                                    GDK_BUTTON_RELEASE_MASK | GDK_LEAVE_NOTIFY_MASK);
    g_signal_connect(area, "realize", G_CALLBACK(on_realize), nullptr);
    g_signal_connect(area, "expose-event", G_CALLBACK(on_expose), nullptr);
    g_signal_connect(area, "configure-event", G_CALLBACK(on_configure), nullptr);
    g_signal_connect(area, "motion-notify-event", G_CALLBACK(on_motion), nullptr);
    g_signal_connect(area, "button-press-event", G_CALLBACK(on_button_press), nullptr);
    g_signal_connect(area, "button-release-event", G_CALLBACK(on_button_release), nullptr);
    return area;
}

GtkWidget *make_top(const hw::WindowSpec &spec, GtkWidget *area) {
    GtkWidget *top = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_widget_set_name(top, "Marrowleaf");
    gtk_window_set_title(GTK_WINDOW(top), spec.title);
    gtk_window_set_resizable(GTK_WINDOW(top), FALSE);
    gtk_widget_add_events(top, GDK_KEY_PRESS_MASK | GDK_KEY_RELEASE_MASK);
    g_signal_connect(top, "destroy", G_CALLBACK(quit), nullptr);
    g_signal_connect(top, "focus-out-event", G_CALLBACK(on_focus_out), nullptr);
    g_signal_connect(top, "key_press_event", G_CALLBACK(on_key), nullptr);
    g_signal_connect(top, "key_release_event", G_CALLBACK(on_key), nullptr);
    GtkWidget *box = gtk_vbox_new(FALSE, 0);
    gtk_container_add(GTK_CONTAINER(top), box);
    gtk_box_pack_start(GTK_BOX(box), area, TRUE, TRUE, 0);
    return top;
}

bool init_toolkit() {
    static bool ready = false;
    if (ready) return true;
    if (!g_get_prgname()) g_set_prgname(program_invocation_short_name);
    gtk_disable_setlocale(); // the locale is the application's own
    ready = gtk_init_check(nullptr, nullptr);
    const char *display = std::getenv("DISPLAY");
    if (!ready)
        std::fprintf(stderr, "DISPLAY=%s: no display; KELVANE_DEVICE=headless needs none\n",
                     display ? display : "");
    return ready;
}

bool open_window(const hw::WindowSpec &spec) {
    if (!init_toolkit()) return false;
    window.pixbuf = gdk_pixbuf_new(GDK_COLORSPACE_RGB, TRUE, 8, spec.width, spec.height);
    if (!window.pixbuf) return false;
    check_pixbuf(window.pixbuf);
    gdk_pixbuf_fill(window.pixbuf, 0xFFFFFFFF);
    window.area = make_area(spec);
    window.top = make_top(spec, window.area);
    gtk_widget_show_all(window.top);
    return true;
}

// Without "destroy", which stands for the user's wish.
void close_window() {
    if (GtkWidget *top = std::exchange(window.top, nullptr)) {
        g_signal_handlers_disconnect_by_func(top, reinterpret_cast<gpointer>(quit), nullptr);
        gtk_widget_destroy(top);
    }
    drop_menu();
    if (window.pixbuf) {
        g_object_unref(window.pixbuf);
        gdk_display_flush(gdk_display_get_default());
    }
    window = {};
}

hw::PixelBuffer window_pixels() {
    GdkPixbuf *pixbuf = window.pixbuf;
    if (!pixbuf) return {};
    check_pixbuf(pixbuf);
    return {gdk_pixbuf_get_pixels(pixbuf), gdk_pixbuf_get_width(pixbuf),
            gdk_pixbuf_get_height(pixbuf), gdk_pixbuf_get_rowstride(pixbuf)};
}

void present_window() {
    window.presented = true;
    if (window.area) gtk_widget_queue_draw(window.area);
}

void pump_window() {
    while (gtk_events_pending()) gtk_main_iteration();
}

// Another task's window is to be seen, or this one again, in its old place.
void set_visible(bool visible) {
    if (!window.top) return;
    GtkWindow *const top = GTK_WINDOW(window.top);
    if (visible) {
        gtk_window_move(top, window.x, window.y);
        gtk_widget_show(window.top);
    } else {
        hw::release_keys();
        gtk_window_get_position(top, &window.x, &window.y);
        gtk_widget_hide(window.top);
    }
}

int64_t boot_clock_us() {
    timespec now;
    clock_gettime(CLOCK_BOOTTIME, &now);
    return int64_t{now.tv_sec} * 1'000'000 + now.tv_nsec / 1'000;
}

timespec to_timespec(int64_t us) {
    return {us / 1'000'000, us % 1'000'000 * 1'000};
}

void pause_window(int64_t us) {
    if (us <= 0) return;
    gdk_display_flush(gdk_display_get_default());
    timespec left = to_timespec(us);
    while (nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
}

// Waits on the connection to the X server, so that input ends it, as what other tasks send and a
// controller says. A signal does too.
void idle_window(int64_t us) {
    if (us <= 0) return;
    GdkDisplay *display = gdk_display_get_default();
    gdk_display_flush(display);
    if (gtk_events_pending()) return;
    pollfd watched[] = {{ConnectionNumber(GDK_DISPLAY_XDISPLAY(display)), POLLIN, 0},
                        {hw::control_fd(), POLLIN, 0}, // a negative one is passed over
                        {hw::tasks::wake_descriptor(), POLLIN, 0}};
    const timespec timeout = to_timespec(us);
    ppoll(watched, std::size(watched), &timeout, nullptr);
}

} // namespace

namespace hw {

const DeviceOps window_device = {
    .name = "window",
    .is_watched = true,
    .open = open_window,
    .close = close_window,
    .pixels = window_pixels,
    .present = present_window,
    .pump = pump_window,
    .clock_us = boot_clock_us,
    .pause = pause_window,
    .idle = idle_window,
    .sleep = [](int64_t, bool) { return false; }, // a workstation does not sleep under its user
    .spend = [](int64_t) {},
    .set_visible = set_visible,
};

} // namespace hw
