#pragma once

#include <QStringList>

#include <functional>
#include <optional>

#include "platform/linux/selection/primary_selection.h"

namespace tralio {

// Determines what is selected now, from what the focused element reports and from PRIMARY.
//
// Vocabulary. Mark: what is highlighted in the application now. PRIMARY: the text that was last selected
// anywhere; it may outlive its mark. An element counts selections if AT-SPI's GetNSelections works on it.
//
// Seen in trials with Debian 12, after the mark had been cleared by a click elsewhere or by a cursor key:
//
//                       | element with the focus reports    | PRIMARY            | events then
// GTK 3                 | GetNSelections 0                  | given up           | selection and caret
// Qt 5, 6               | GetNSelections 0                  | keeps the old text | selection and caret
// LibreOffice           | 0, of its own paragraph only      | given up           | selection and caret
// Firefox ESR           | 0, the document too               | keeps the old text | caret alone
// Chromium, whole tree  | 0, the document too               | keeps the old text | both; none when the click
//                       |                                   |                    | falls on the mark itself
// Chromium, as shipped  | there is no element below the     | keeps the old text | none
//                       | window                            |                    |
// xterm, urxvt, st      | not on the bus                    | keeps the old text | none
//
// (None of them supports Document.GetTextSelections, which AT-SPI has from 2.52 on.)
//
// So an element that counts selections is believed, and events are not used: they come late or never. PRIMARY
// is asked in three cases: where the element shows only a part of the mark, within a second of a new mark
// where a page counts none yet (Chromium's tree follows late), and where no element counts. In the last case
// a press of the mouse, or on X11 of a key, since the mark speaks against PRIMARY; only the application's own
// Copy can then show whether anything is marked. The same holds for what may be a password: Chromium gives
// the typed text of a password field to PRIMARY (GTK 3 gives dots; GTK 4, Firefox and Qt nothing), but copies
// nothing from such a field.

/// What the focused element reports about its selection.
struct ElementSelection {
    enum class Answer {
        unknown,  ///< there is no such element, or it does not count selections
        none,
        some,
    };
    /// Whether the element's text is all that can be selected together with it.
    enum class Reach {
        whole,  ///< an input field, a terminal
        part,   ///< a paragraph of a document, or a page, whose other elements show as placeholders in its
                ///< text
    };

    Answer answer = Answer::unknown;
    QString text;
    Reach reach = Reach::part;
};

using AskPrimary = std::function<std::optional<PrimaryText>()>;

/// The selection of an element that has one: PRIMARY, if it contains the element's part, else that part.
/// Nothing if PRIMARY may be of an older mark, so that the application has to be asked.
[[nodiscard]] std::optional<QString> selectedTextOf(
    const ElementSelection& element, const AskPrimary& primary);

/// The selection where no element counts: PRIMARY, unless something speaks against it.
[[nodiscard]] std::optional<QString> uncountedSelection(const AskPrimary& primary);

/// The same, for a focused element that reports no selection.
[[nodiscard]] std::optional<QString> selectionBeside(
    const ElementSelection& element, const AskPrimary& primary);

/// Whether an application is known not to give passwords to PRIMARY: terminals, which do not show them, and
/// programs made with three of the toolkits that were tried. `names` are the application's names, `toolkit`
/// is the one that it reports on the accessibility bus; both may be empty.
[[nodiscard]] bool keepsPasswordsToItself(const QStringList& names, const QString& toolkit);

/// Whether the marked text of an input field may be a GTK 4 password. GTK 4 reports a password field, with
/// its text, like any other field, but gives none of it to PRIMARY, and nothing can be copied from it.
[[nodiscard]] bool mayBePasswordOfGtk4(const QString& marked, const AskPrimary& primary);

/// How a text was selected, if that is known.
enum class Marking { unknown, byDoubleClick };
/// Whether a text may be a password: a single word, unless it consists of letters only and was selected by a
/// double click, as people do with words to look up.
[[nodiscard]] bool looksLikePassword(const QString& text, Marking marking);

}  // namespace tralio
