#pragma once

#import <AppKit/NSAccessibility.h>
#import <AppKit/NSApplication.h>
#import <AppKit/NSControls.h>
#import <AppKit/NSDrawing.h>
#import <AppKit/NSEvent.h>
#import <AppKit/NSImage.h>
#import <AppKit/NSMenu.h>
#import <AppKit/NSPanels.h>
#import <AppKit/NSText.h>
#import <AppKit/NSView.h>
#import <AppKit/NSWindow.h>
#import <Foundation/Foundation.h>
