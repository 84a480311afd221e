#include "hosts/linux/application/AboutDialog.h"

#include <gdkmm/pixbuf.h>
#include <gtk/gtk.h>
#include <gtkmm/icontheme.h>

#include "hosts/linux/application/ApplicationVersion.h"
#include "hosts/linux/keyboard/ModifierNames.h"
#include "hosts/linux/system/ApplicationId.h"
#include "hosts/linux/workspace/ActiveWindow.h"
#include "locale/DesktopLocale.h"

namespace navora {
namespace {

// Returns a transparent pixel. Without a logo the dialog would show the "missing image" icon.
Glib::RefPtr<Gdk::Pixbuf> emptyLogo() {
  const auto picture = Gdk::Pixbuf::create(Gdk::COLORSPACE_RGB, /*has_alpha=*/true, 8, 1, 1);
  picture->fill(0);
  return picture;
}

}  // namespace

AboutDialog::AboutDialog() = default;

AboutDialog::~AboutDialog() = default;

void AboutDialog::makeDialog() {
  dialog_ = std::make_unique<Gtk::AboutDialog>();
  dialog_->set_modal(false);
  dialog_->set_version(applicationVersion());
  if (Gtk::IconTheme::get_default()->has_icon(applicationId)) {
    dialog_->set_logo_icon_name(applicationId);
  } else {
    dialog_->set_logo(emptyLogo());
  }
  // Its button, Escape and the window manager all hide it; it is kept for the next show().
  dialog_->signal_delete_event().connect([](GdkEventAny*) { return true; });
  dialog_->signal_response().connect([this](int) { dialog_->hide(); });
}

void AboutDialog::show(Gtk::Window* parent, const AboutPanelOptions& options) {
  if (!dialog_) makeDialog();
  dialog_->set_program_name(options.applicationName);
  dialog_->set_title(L("О Наворе"));
  dialog_->set_comments(withModifierNames(options.credits));
  // The toolkit's own label would be in the system's language, not the interface's.
  if (Gtk::Widget* close = dialog_->get_widget_for_response(Gtk::RESPONSE_DELETE_EVENT))
    gtk_button_set_label(GTK_BUTTON(close->gobj()), L("Закрыть").c_str());
  if (parent != nullptr && parent->get_visible()) {
    dialog_->set_transient_for(*parent);
  } else {
    dialog_->unset_transient_for();
  }
  gtk_widget_realize(GTK_WIDGET(dialog_->gobj()));
  dialog_->present(activationTime(dialog_->get_window()->gobj()));
}

}  // namespace navora
