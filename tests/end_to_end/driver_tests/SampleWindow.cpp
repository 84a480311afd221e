// A small GTK program for the driver's tests, which prints a line on standard output for each
// event.
#include <cstdio>
#include <string>

#include <gtk/gtk.h>

namespace {

void print(const std::string& line) {
  std::puts(line.c_str());
  std::fflush(stdout);
}

void entryActivated(GtkEntry* entry, gpointer) {
  print(std::string("entered ") + gtk_entry_get_text(entry));
}

gboolean keyPressed(GtkWidget*, GdkEventKey* event, gpointer) {
  const guint modifiers = event->state & gtk_accelerator_get_default_mod_mask();
  gchar* name = gtk_accelerator_name(gdk_keyval_to_lower(event->keyval),
                                     static_cast<GdkModifierType>(modifiers));
  print(std::string("key ") + name);
  g_free(name);
  return FALSE;
}

gboolean swatchDrawn(GtkWidget* swatch, cairo_t* cairo, gpointer) {
  cairo_set_source_rgb(cairo, 200 / 255.0, 40 / 255.0, 120 / 255.0);
  cairo_paint(cairo);
  cairo_set_source_rgb(cairo, 0, 0, 1);
  cairo_rectangle(cairo, gtk_widget_get_allocated_width(swatch) / 2.0, 0, 1000, 1000);
  cairo_fill(cairo);
  return TRUE;
}

gboolean swatchPressed(GtkWidget*, GdkEventButton* event, gpointer) {
  const bool control = (event->state & GDK_CONTROL_MASK) != 0;
  print("pressed " + std::to_string(event->button) + (control ? " with Control" : "") + " at " +
        std::to_string(static_cast<int>(event->x)) + "," +
        std::to_string(static_cast<int>(event->y)));
  return TRUE;
}

void askClicked(GtkButton*, gpointer window) {
  GtkWidget* dialog = gtk_message_dialog_new(GTK_WINDOW(window), GTK_DIALOG_MODAL,
                                             GTK_MESSAGE_QUESTION, GTK_BUTTONS_NONE, "Really?");
  gtk_message_dialog_format_secondary_text(GTK_MESSAGE_DIALOG(dialog), "The second line");
  gtk_dialog_add_button(GTK_DIALOG(dialog), "Proceed", GTK_RESPONSE_ACCEPT);
  gtk_dialog_add_button(GTK_DIALOG(dialog), "Stop", GTK_RESPONSE_CANCEL);
  const int answer = gtk_dialog_run(GTK_DIALOG(dialog));
  gtk_widget_destroy(dialog);
  print(answer == GTK_RESPONSE_ACCEPT ? "answered Proceed" : "answered Stop");
}

void openClicked(GtkButton*, gpointer) {
  for (const char* url :
       {"https://elsewhere.example/a?b=c&d=%20#e", "mailto:someone@example.com"}) {
    GError* error = nullptr;
    if (!g_app_info_launch_default_for_uri(url, nullptr, &error)) {
      print(std::string("not opened: ") + error->message);
      g_error_free(error);
    }
  }
  print("opened");
}

GtkWidget* makeSwatch() {
  GtkWidget* swatch = gtk_drawing_area_new();
  gtk_widget_set_size_request(swatch, 300, 120);
  gtk_widget_add_events(swatch, GDK_BUTTON_PRESS_MASK);
  g_signal_connect(swatch, "draw", G_CALLBACK(swatchDrawn), nullptr);
  g_signal_connect(swatch, "button-press-event", G_CALLBACK(swatchPressed), nullptr);
  atk_object_set_name(gtk_widget_get_accessible(swatch), "Swatch");
  return swatch;
}

void wakeChanged(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                 GVariant* parameters, gpointer) {
  gboolean sleeping = FALSE;
  g_variant_get(parameters, "(b)", &sleeping);
  print(sleeping ? "going to sleep" : "woken");
}

void watchSleep() {
  GDBusConnection* bus = g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
  g_dbus_connection_signal_subscribe(
      bus, "org.freedesktop.login1", "org.freedesktop.login1.Manager", "PrepareForSleep", nullptr,
      nullptr, G_DBUS_SIGNAL_FLAGS_NONE, wakeChanged, nullptr, nullptr);
}

}  // namespace

int main(int argc, char** argv) {
  gtk_init(&argc, &argv);
  GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_title(GTK_WINDOW(window), "Driver sample – окно");
  g_signal_connect(window, "destroy", G_CALLBACK(gtk_main_quit), nullptr);
  g_signal_connect(window, "key-press-event", G_CALLBACK(keyPressed), nullptr);

  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 6);
  gtk_container_add(GTK_CONTAINER(window), box);
  GtkWidget* entry = gtk_entry_new();
  g_signal_connect(entry, "activate", G_CALLBACK(entryActivated), nullptr);
  GtkWidget* ask = gtk_button_new_with_label("Ask");
  g_signal_connect(ask, "clicked", G_CALLBACK(askClicked), window);
  GtkWidget* open = gtk_button_new_with_label("Open links");
  g_signal_connect(open, "clicked", G_CALLBACK(openClicked), nullptr);
  for (GtkWidget* child : {gtk_label_new("A label"), entry, makeSwatch(), ask, open}) {
    gtk_box_pack_start(GTK_BOX(box), child, FALSE, FALSE, 0);
  }
  gtk_widget_show_all(window);
  watchSleep();
  print("ready");
  gtk_main();
  print("closed");
}
