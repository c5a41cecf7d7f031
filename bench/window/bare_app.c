/* SPDX-License-Identifier: MIT */
/* The other side: the same screen from a bare GTK+ 2 program in the toolkit's own main loop. */
#include <stdio.h>

#include <gtk/gtk.h>

static gboolean draw(GtkWidget *area, GdkEventExpose *event, gpointer data) {
    cairo_t *cr = gdk_cairo_create(area->window);
    (void)event;
    (void)data;
    cairo_set_source_rgb(cr, 0x55 / 255.0, 0x55 / 255.0, 0x55 / 255.0);
    cairo_paint(cr);
    cairo_destroy(cr);
    return TRUE;
}

static gboolean key(GtkWidget *window, GdkEventKey *event, gpointer data) {
    (void)window;
    (void)event;
    (void)data;
    puts("key");
    fflush(stdout);
    return TRUE;
}

int main(int argc, char **argv) {
    GtkWidget *window, *area;
    gtk_init(&argc, &argv);
    window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    area = gtk_drawing_area_new();
    gtk_window_set_title(GTK_WINDOW(window), "Bare");
    gtk_widget_set_size_request(area, 600, 800);
    gtk_container_add(GTK_CONTAINER(window), area);
    g_signal_connect(area, "expose-event", G_CALLBACK(draw), NULL);
    g_signal_connect(window, "key-press-event", G_CALLBACK(key), NULL);
    gtk_widget_show_all(window);
    gtk_main();
    return 0;
}
