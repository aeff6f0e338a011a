#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "htmlview/html_document.h"

namespace velm {

/// A window of class "DISPLAYCLASS": shows one HTML page through the system's rich text control, which is its child.
/// The object is made with its window and dies with it.
class HtmlDisplay {
public:
    /// Registers the class and loads the rich text library; false when the system refuses.
    static bool Register(HINSTANCE library);

private:
    struct Link {
        LONG first;
        LONG last;
    };

    explicit HtmlDisplay(HWND window) : window_(window) {}

    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);

    bool CreateText();
    void AddText(std::u16string text, bool plain);
    void Clear();
    void ShowPage();
    void ScrollTo(LONG place);
    void PlaceMarks();
    bool TakeMark(char16_t mark, LONG from, LONG& at);
    bool ScrollToAnchor(std::u16string_view name);
    void Follow(LONG position);
    void Resize(int width, int height);
    int RoomInTwips() const;

    HWND window_;
    HWND text_ = nullptr;  ///< the rich text control
    std::u16string source_;
    HtmlDocument document_;
    std::vector<Link> links_;    ///< places of document_.links
    std::vector<LONG> anchors_;  ///< places of document_.anchors
    bool shown_ = false;
    bool shrink_ = false;
    int laidOutWidth_ = 0;
};

}  // namespace velm
