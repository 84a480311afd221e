#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtk/gtk.h>
#include <gtkmm/filechooserdialog.h>

#include "hosts/linux/system/GLibSupport.h"
#include "hosts/linux/window/LinuxDialogs.h"
#include "linux/window/WindowTest.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

using testing::UnorderedElementsAre;
using Paths = std::vector<std::filesystem::path>;

// Without a portal on the bus GTK shows its own dialogs, in this process.
class LinuxDialogsTest : public WindowTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(show(*window_));
    for (const char* name : {"one.txt", "two.txt", "three.txt"})
      writeFile(folder_.path() / name, name);
  }

  // A panel left open by a failed test would keep the keyboard focus from the next tests.
  void TearDown() override {
    if (panel_ != nullptr && answers_ == 0) respond(GTK_RESPONSE_CANCEL);
  }

  void openPanel(const OpenPanelParameters& parameters) {
    dialogs_.beginOpenPanel(*window_, parameters, [this](std::optional<Paths> files) {
      ++answers_;
      opened_ = std::move(files);
    });
    findPanel();
  }
  void savePanel(const std::string& suggestedName) {
    dialogs_.beginSavePanel(*window_, suggestedName,
                            [this](std::optional<std::filesystem::path> file) {
                              ++answers_;
                              saved_ = std::move(file);
                            });
    findPanel();
  }
  void findPanel() {
    ASSERT_TRUE(waitUntil([this] {
      for (Gtk::Window* window : Gtk::Window::list_toplevels()) {
        if (GTK_IS_FILE_CHOOSER_DIALOG(window->gobj()) && isReadyForKeys(*window)) panel_ = window;
      }
      return panel_ != nullptr;
    }));
  }
  GtkFileChooser* chooser() { return GTK_FILE_CHOOSER(panel_->gobj()); }
  std::set<std::filesystem::path> selection() {
    std::set<std::filesystem::path> selected;
    GSList* files = gtk_file_chooser_get_filenames(chooser());
    for (GSList* file = files; file != nullptr; file = file->next)
      selected.insert(static_cast<const char*>(file->data));
    g_slist_free_full(files, g_free);
    return selected;
  }
  std::filesystem::path chosenFile() {
    const GCharPtr chosen(gtk_file_chooser_get_filename(chooser()));
    return stringFrom(chosen.get());
  }
  void respond(int response) {
    gtk_dialog_response(GTK_DIALOG(panel_->gobj()), response);
    ASSERT_TRUE(waitUntil([this] { return answers_ > 0; }));
    runPendingEvents();
    EXPECT_EQ(answers_, 1);
  }

  const TemporaryDirectory folder_{"navora-dialogs"};
  std::unique_ptr<LinuxMainWindow> window_ = makeWindow();
  LinuxDialogs dialogs_;
  Gtk::Window* panel_ = nullptr;
  int answers_ = 0;
  std::optional<Paths> opened_;
  std::optional<std::filesystem::path> saved_;
};

TEST_F(LinuxDialogsTest, AnOpenPanelReturnsTheChosenFile) {
  openPanel({});
  EXPECT_EQ(gtk_file_chooser_get_action(chooser()), GTK_FILE_CHOOSER_ACTION_OPEN);
  EXPECT_FALSE(gtk_file_chooser_get_select_multiple(chooser()));
  gtk_file_chooser_set_current_folder(chooser(), folder_.path().c_str());
  const auto wanted = folder_.path() / "two.txt";
  // The panel loses the selection while it is still loading its first folder.
  ASSERT_TRUE(waitUntil([&] {
    gtk_file_chooser_select_filename(chooser(), wanted.c_str());
    return chosenFile() == wanted;
  }));
  respond(GTK_RESPONSE_ACCEPT);
  EXPECT_EQ(opened_, Paths{folder_.path() / "two.txt"});
}

TEST_F(LinuxDialogsTest, AnOpenPanelReturnsSeveralFiles) {
  openPanel({.allowsMultipleSelection = true});
  gtk_file_chooser_set_current_folder(chooser(), folder_.path().c_str());
  const std::set<std::filesystem::path> all{folder_.path() / "one.txt", folder_.path() / "two.txt",
                                            folder_.path() / "three.txt"};
  // Until it has loaded this folder, the panel selects the files of its first folder.
  ASSERT_TRUE(waitUntil([&] {
    gtk_file_chooser_select_all(chooser());
    return selection() == all;
  }));
  respond(GTK_RESPONSE_ACCEPT);
  ASSERT_TRUE(opened_);
  EXPECT_THAT(*opened_, UnorderedElementsAre(folder_.path() / "one.txt", folder_.path() / "two.txt",
                                             folder_.path() / "three.txt"));
}

TEST_F(LinuxDialogsTest, AnOpenPanelForFoldersReturnsAFolder) {
  openPanel({.allowsDirectories = true});
  EXPECT_EQ(gtk_file_chooser_get_action(chooser()), GTK_FILE_CHOOSER_ACTION_SELECT_FOLDER);
  gtk_file_chooser_set_current_folder(chooser(), folder_.path().c_str());
  ASSERT_TRUE(waitUntil([this] { return chosenFile() == folder_.path(); }));
  respond(GTK_RESPONSE_ACCEPT);
  EXPECT_EQ(opened_, Paths{folder_.path()});
}

TEST_F(LinuxDialogsTest, ACancelledOpenPanelReturnsNullopt) {
  openPanel({});
  keyboard_.chord("Escape");
  ASSERT_TRUE(waitUntil([this] { return answers_ > 0; }));
  EXPECT_EQ(answers_, 1);
  EXPECT_EQ(opened_, std::nullopt);
}

TEST_F(LinuxDialogsTest, ASavePanelSuggestsTheNameAndReturnsTheFile) {
  savePanel("Отчёт & notes.txt");
  const char* name = gtk_file_chooser_get_current_name(chooser());
  EXPECT_STREQ(name, "Отчёт & notes.txt");
  gtk_file_chooser_set_current_folder(chooser(), folder_.path().c_str());
  const auto expected = (folder_.path() / "Отчёт & notes.txt").string();
  ASSERT_TRUE(waitUntil([&] { return chosenFile() == expected; }));
  respond(GTK_RESPONSE_ACCEPT);
  EXPECT_EQ(saved_, std::filesystem::path(expected));
}

TEST_F(LinuxDialogsTest, ASavePanelConfirmsBeforeReplacingAFile) {
  savePanel("one.txt");
  EXPECT_TRUE(gtk_file_chooser_get_do_overwrite_confirmation(chooser()));
  respond(GTK_RESPONSE_CANCEL);
}

TEST_F(LinuxDialogsTest, ACancelledSavePanelReturnsNullopt) {
  savePanel("new.txt");
  respond(GTK_RESPONSE_CANCEL);
  EXPECT_EQ(saved_, std::nullopt);
}

TEST_F(LinuxDialogsTest, PanelsAreModalAndTransientForTheWindow) {
  savePanel("new.txt");
  EXPECT_EQ(panel_->get_transient_for(), &window_->native());
  EXPECT_TRUE(panel_->get_modal());
  respond(GTK_RESPONSE_CANCEL);
}

}  // namespace
}  // namespace navora
