// The setup library's texts that the launcher shows, by name: one table for the launcher,
// the product checker and the demo product's strings file, whose lines name these entries
// (tools/make_strings.py reads this file). A number is 16 bits; the library owns the texts.
#pragma once

#include <cstdint>

// X(name, number)
#define LFX_TEXTS(X)                                                                         \
    X(ProductName, 0xFF00)       /* box titles, the window's text */                          \
    X(CharacterSet, 0xFF04)      /* the fonts' character set */                                \
    X(LaunchTitle, 0xFF05)       /* the LAUNCH page's title */                                 \
    X(Languages, 0xFFF0)         /* the language tags that choose page variants */             \
    X(Install, 0x1000)           /* INSTALL's title and its first button */                   \
    X(SystemCheck, 0x1001)                                                                    \
    X(Help, 0x1002)              /* HELP's title and the buttons that open it */              \
    X(Options, 0x1003)           /* OPTIONS' title, its buttons, the uninstall question's caption */ \
    X(Exit, 0x1004)                                                                           \
    X(WebSite, 0x1006)                                                                        \
    X(Uninstall, 0x1007)                                                                      \
    X(Back, 0x1009)                                                                           \
    X(ReadMe, 0x1014)                                                                         \
    X(Troubleshooting, 0x1015)                                                                \
    X(Licence, 0x1016)                                                                        \
    X(PlayGame, 0xF007)                                                                       \
    X(PlaySecond, 0xF005)                                                                     \
    X(InsertDisc, 0x5002)                                                                     \
    X(InsertFirstDisc, 0x5003)                                                                \
    X(OfferDirectX, 0x5006)                                                                   \
    X(CannotStart, 0x5007)                                                                    \
    X(LowMemory, 0x5008)                                                                      \
    X(LowPaging, 0x5009)                                                                      \
    X(NoDirectX, 0x5012)                                                                      \
    X(NoSound, 0x5013)                                                                        \
    X(DemoNoDirectX, 0x5014)                                                                  \
    X(UninstallQuestion, 0x7012)                                                              \
    X(DirectXCaption, 0x7800)                                                                 \
    X(RestartQuestion, 0x7882)                                                                \
    X(NoDisplay, 0x7884)                                                                      \
    X(NoDirectXFolder, 0xD047)

namespace lfx_text
{
#define LFX_TEXT_NUMBER(name, number) constexpr uint16_t name = number;
LFX_TEXTS(LFX_TEXT_NUMBER)
#undef LFX_TEXT_NUMBER
} // namespace lfx_text
