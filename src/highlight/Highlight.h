#pragma once

#include <QString>

#include <memory>
#include <vector>

class NotePage;

/// The handle of one painted hit. It means something to the page alone; no two hits of a process
/// have the same, not even in two pages.
struct HighlightSegment {
    int painting; ///< The painting that it belongs to.
    int index; ///< Which hit of that painting, in the order of the text.

    bool operator==(const HighlightSegment&) const = default;
};

/// The hits of a search word, painted over the note. The note's HTML, its undo history and whether
/// it counts as changed have nothing to do with it.
///
/// A hit is a stretch of the note's text that equals the word, upper and lower case told apart. It
/// may lie anywhere in a word, run over several inline elements and overlap the next hit; it does
/// not cross the border of a block, a line break or a picture. White space counts as it is shown:
/// one blank, whatever the source has. Hits in an element that is hidden, or inside one that is,
/// are not painted.
///
/// While the note is edited, hits in the paragraphs that changed are found again. Another note in
/// the page takes the paint away with the text; the handles stay until the next `CancleHighlight`.
///
/// Failures are silent: the user sees fewer hits. User-interface thread only. A call waits for the
/// page; the host may end this object meanwhile, and then the result is 0.
class Highlight {
public:
    /// `page` is not owned and must outlive this.
    explicit Highlight(NotePage& page);

    /// Takes the old highlight away and paints the hits of `keyword`; the view moves to the first
    /// one, and only to it. An empty `keyword` paints nothing. All hits are one call into the page.
    /// Returns 1, also when there was nothing to paint; 0 if the page cannot be called.
    int HighlightText(const QString& keyword);
    /// Takes all that was painted away. Returns 1 when nothing is left to remove, at once if there
    /// was nothing; 0 if the page cannot be called or refuses, and then every handle is kept.
    int CancleHighlight();

    /// The handles of what is painted, in the order of painting. None is the state of no highlight.
    const std::vector<HighlightSegment>& segments() const { return m_highlightSegments; }

private:
    NotePage& m_page;
    std::vector<HighlightSegment> m_highlightSegments;
    std::shared_ptr<const void> m_life = std::make_shared<char>();
};
