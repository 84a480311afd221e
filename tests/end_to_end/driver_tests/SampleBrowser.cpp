// A window with one web view and nothing else around it but a bar above, for the driver's own tests
// of what it does with pages. It has the size of an application's main window.
#include <gtk/gtk.h>
#include <webkit2/webkit2.h>

int main(int argc, char** argv) {
  gtk_init(&argc, &argv);
  const char* url = argc > 1 ? argv[1] : g_getenv("NAVORA_URL");
  GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_default_size(GTK_WINDOW(window), 900, 650);
  gtk_window_set_title(GTK_WINDOW(window), "Driver browser");
  g_signal_connect(window, "destroy", G_CALLBACK(gtk_main_quit), nullptr);
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  GtkWidget* view = webkit_web_view_new();
  gtk_box_pack_start(GTK_BOX(box), gtk_label_new("A bar above the page"), FALSE, FALSE, 10);
  gtk_box_pack_start(GTK_BOX(box), view, TRUE, TRUE, 0);
  gtk_container_add(GTK_CONTAINER(window), box);
  webkit_web_view_load_uri(WEBKIT_WEB_VIEW(view), url);
  gtk_widget_show_all(window);
  gtk_main();
}
