#pragma once

#import <AppKit/AppKit.h>

#include "platform/CaptureEditorView.h"

@class CaptureEditor;
@class NavoraCaptureEditorForwarder;

namespace navora {

class MacCaptureEditor final : public CaptureEditorView {
 public:
  explicit MacCaptureEditor(CaptureEditorDelegate& delegate);
  ~MacCaptureEditor() override;
  MacCaptureEditor(const MacCaptureEditor&) = delete;
  MacCaptureEditor& operator=(const MacCaptureEditor&) = delete;

  std::string text() const override;
  void setText(const std::string& text) override;
  void setEditable(bool editable) override;
  void setStyle(const CaptureEditorStyle& style) override;
  void setPlaceholder(const std::string& text) override;
  void setAccessibilityLabel(const std::string& label) override;
  void commitComposition() override;
  void makeFirstResponder() override;
  void moveCaretToEnd() override;
  double textHeight(double enough) override;

  // The scroll view that holds the editor, for the caller to add to the panel.
  NSScrollView* _Nonnull nsView() const { return scroll_; }

 private:
  CaptureEditor* _Nonnull editor_;
  NSScrollView* _Nonnull scroll_;
  // Kept here because the text view holds its delegate weakly.
  NavoraCaptureEditorForwarder* _Nonnull forwarder_;
};

}  // namespace navora
