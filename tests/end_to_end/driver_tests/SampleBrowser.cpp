// A window with a bar and a web view, for tests of pages and of PageDriver. It has the size of the
// application's main window. SIGHUP switches between the light and the dark theme. A script whose
// path is in SAMPLE_BROWSER_SCRIPT runs in every page before the page's own. A file chooser returns
// the program itself.
#include <csignal>

#include <glib-unix.h>
#include <gtk/gtk.h>
#include <webkit2/webkit2.h>

namespace {

gboolean switchColorScheme(gpointer) {
  GtkSettings* settings = gtk_settings_get_default();
  gboolean dark = FALSE;
  g_object_get(settings, "gtk-application-prefer-dark-theme", &dark, nullptr);
  g_object_set(settings, "gtk-application-prefer-dark-theme", !dark, nullptr);
  return G_SOURCE_CONTINUE;
}

void addScript(WebKitWebView* view, const char* path) {
  g_autofree char* source = nullptr;
  g_autoptr(GError) error = nullptr;
  if (!g_file_get_contents(path, &source, nullptr, &error)) g_error("%s", error->message);
  WebKitUserScript* script =
      webkit_user_script_new(source, WEBKIT_USER_CONTENT_INJECT_TOP_FRAME,
                             WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, nullptr, nullptr);
  webkit_user_content_manager_add_script(webkit_web_view_get_user_content_manager(view), script);
  webkit_user_script_unref(script);
}

gboolean chooseFile(WebKitWebView*, WebKitFileChooserRequest* request, gpointer program) {
  const char* const files[] = {static_cast<const char*>(program), nullptr};
  webkit_file_chooser_request_select_files(request, files);
  return TRUE;
}

}  // namespace

int main(int argc, char** argv) {
  gtk_init(&argc, &argv);
  g_unix_signal_add(SIGHUP, switchColorScheme, nullptr);
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
  g_signal_connect(view, "run-file-chooser", G_CALLBACK(chooseFile), argv[0]);
  const char* script = g_getenv("SAMPLE_BROWSER_SCRIPT");
  if (script) addScript(WEBKIT_WEB_VIEW(view), script);
  webkit_web_view_load_uri(WEBKIT_WEB_VIEW(view), url);
  gtk_widget_show_all(window);
  gtk_main();
}
