#include "hosts/linux/window/LinuxDialogs.h"

#include <memory>
#include <utility>
#include <vector>

#include <gtk/gtk.h>

#include "hosts/linux/system/GLibSupport.h"
#include "hosts/linux/window/AlertDialog.h"
#include "hosts/linux/window/LinuxMainWindow.h"
#include "locale/DesktopLocale.h"

namespace navora {
namespace {

using FilesCompletion = std::function<void(std::optional<std::vector<std::filesystem::path>>)>;

std::vector<std::filesystem::path> chosenFiles(GtkFileChooser* chooser) {
  std::vector<std::filesystem::path> files;
  GSList* names = gtk_file_chooser_get_filenames(chooser);
  for (GSList* name = names; name != nullptr; name = name->next)
    files.emplace_back(static_cast<char*>(name->data));
  g_slist_free_full(names, g_free);
  return files;
}

void onResponse(GtkNativeDialog* dialog, int response, gpointer data) {
  const std::unique_ptr<FilesCompletion> completion(static_cast<FilesCompletion*>(data));
  std::optional<std::vector<std::filesystem::path>> files;
  if (response == GTK_RESPONSE_ACCEPT) files = chosenFiles(GTK_FILE_CHOOSER(dialog));
  gtk_native_dialog_destroy(dialog);
  g_object_unref(dialog);
  (*completion)(std::move(files));
}

// Makes a modal chooser with the default button labels.
GtkFileChooserNative* makeChooser(MainWindow& window, const std::string& title,
                                  GtkFileChooserAction action) {
  auto& parent = static_cast<LinuxMainWindow&>(window).native();
  auto* chooser =
      gtk_file_chooser_native_new(title.c_str(), parent.gobj(), action, nullptr, nullptr);
  gtk_native_dialog_set_modal(GTK_NATIVE_DIALOG(chooser), TRUE);
  return chooser;
}

void show(GtkFileChooserNative* chooser, FilesCompletion completion) {
  g_signal_connect(chooser, "response", G_CALLBACK(onResponse),
                   new FilesCompletion(std::move(completion)));
  gtk_native_dialog_show(GTK_NATIVE_DIALOG(chooser));
}

}  // namespace

void LinuxDialogs::runAlert(const AlertDescription& alert, AlertCompletion completion) {
  AlertDialog::run(parent_, alert, std::move(completion));
}

void LinuxDialogs::beginOpenPanel(MainWindow& window, const OpenPanelParameters& parameters,
                                  OpenPanelCompletion completion) {
  const auto action = parameters.allowsDirectories ? GTK_FILE_CHOOSER_ACTION_SELECT_FOLDER
                                                   : GTK_FILE_CHOOSER_ACTION_OPEN;
  auto* chooser = makeChooser(window, g_dgettext("gtk30", "Select a File"), action);
  gtk_file_chooser_set_select_multiple(GTK_FILE_CHOOSER(chooser),
                                       parameters.allowsMultipleSelection ? TRUE : FALSE);
  show(chooser, std::move(completion));
}

void LinuxDialogs::beginSavePanel(MainWindow& window, const std::string& suggestedName,
                                  SavePanelCompletion completion) {
  auto* chooser = makeChooser(window, L("Сохранить"), GTK_FILE_CHOOSER_ACTION_SAVE);
  gtk_file_chooser_set_do_overwrite_confirmation(GTK_FILE_CHOOSER(chooser), TRUE);
  gtk_file_chooser_set_current_name(GTK_FILE_CHOOSER(chooser), suggestedName.c_str());
  if (const char* downloads = g_get_user_special_dir(G_USER_DIRECTORY_DOWNLOAD)) {
    gtk_file_chooser_set_current_folder(GTK_FILE_CHOOSER(chooser), downloads);
  }
  show(chooser, [completion = std::move(completion)](
                    std::optional<std::vector<std::filesystem::path>> files) {
    if (!files || files->empty()) return completion(std::nullopt);
    completion(files->front());
  });
}

}  // namespace navora
