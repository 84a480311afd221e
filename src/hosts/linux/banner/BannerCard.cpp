#include "hosts/linux/banner/BannerCard.h"

#include <numbers>

#include <gdkmm/general.h>
#include <gtkmm/stylecontext.h>
#include <gtkmm/window.h>

#include "hosts/linux/banner/BannerStyle.h"
#include "hosts/linux/graphics/CairoRegion.h"
#include "platform/UpdateBannerView.h"

namespace navora {
namespace {

using Layout = UpdateBannerLayout;

void roundedPath(const Cairo::RefPtr<Cairo::Context>& context, double inset, double width,
                 double height) {
  constexpr double quarter = std::numbers::pi / 2;
  const double radius = Layout::cornerRadius - inset;
  const double left = inset + radius;
  const double right = width - inset - radius;
  const double top = inset + radius;
  const double bottom = height - inset - radius;
  context->begin_new_sub_path();
  context->arc(right, top, radius, -quarter, 0);
  context->arc(right, bottom, radius, 0, quarter);
  context->arc(left, bottom, radius, quarter, 2 * quarter);
  context->arc(left, top, radius, 2 * quarter, 3 * quarter);
  context->close_path();
}

Gdk::RGBA separatorColor(const Glib::RefPtr<Gtk::StyleContext>& style) {
  Gdk::RGBA color;
  if (style->lookup_color("borders", color)) return color;
  color = style->get_color(style->get_state());
  color.set_alpha(0.2 * color.get_alpha());
  return color;
}

}  // namespace

PopoverNode::PopoverNode()
    : Glib::ExtraClassInit(
          [](gpointer widgetClass, gpointer) {
            gtk_widget_class_set_css_name(GTK_WIDGET_CLASS(widgetClass), "popover");
          },
          nullptr) {}

BannerCard::BannerCard()
    : Glib::ObjectBase("NavoraUpdateBannerCard"),
      Gtk::Box(Gtk::ORIENTATION_VERTICAL, static_cast<int>(Layout::spacing)) {
  get_style_context()->add_class("background");
  get_style_context()->add_class(BannerStyle::card);
}

bool BannerCard::containsFocus() {
  auto* window = dynamic_cast<Gtk::Window*>(get_toplevel());
  Gtk::Widget* focus = window == nullptr ? nullptr : window->get_focus();
  return focus != nullptr && (focus == this || focus->is_ancestor(*this));
}

void BannerCard::holdFocus() {
  set_can_focus(true);
  grab_focus();
}

bool BannerCard::focusFirstButton() {
  return child_focus(Gtk::DIR_TAB_FORWARD);
}

bool BannerCard::on_draw(const Cairo::RefPtr<Cairo::Context>& context) {
  const bool handled = Gtk::Box::on_draw(context);
  drawHairline(context);
  return handled;
}

void BannerCard::drawHairline(const Cairo::RefPtr<Cairo::Context>& context) {
  context->save();
  roundedPath(context, Layout::borderWidth / 2, get_allocated_width(), get_allocated_height());
  context->set_line_width(Layout::borderWidth);
  Gdk::Cairo::set_source_rgba(context, separatorColor(get_style_context()));
  context->stroke();
  context->restore();
}

void BannerCard::on_size_allocate(Gtk::Allocation& allocation) {
  Gtk::Box::on_size_allocate(allocation);
  // The overlay gives the card a rectangular GdkWindow, which would keep clicks outside the rounded
  // corners from the page.
  if (const auto surface = get_parent_window()) {
    const auto region =
        roundedRegion(allocation.get_width(), allocation.get_height(), Layout::cornerRadius);
    gdk_window_input_shape_combine_region(surface->gobj(), region.get(), 0, 0);
  }
}

// A focusable container does not pass the focus on to its children, so the card must stop being
// focusable first.
bool BannerCard::on_focus(Gtk::DirectionType direction) {
  set_can_focus(false);
  return Gtk::Box::on_focus(direction);
}

}  // namespace navora
