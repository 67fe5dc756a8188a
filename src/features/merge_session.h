#pragma once

#include <QString>

#include <optional>
#include <vector>

/// A merge that is ready to be done.
struct CollectedPages
{
    std::vector<QString> pages; ///< page files in capture order
    int dir = 0;                ///< 0 vertical, 1 horizontal, as chosen when the last page came
};

/// What one captured page led to.
struct MergeStep
{
    int thumbnail = 0; ///< label that shows the page, 1 to 4; 1 also clears the others
    std::optional<CollectedPages> job; ///< set by the page that completes the merge
};

/// The pages of one merged image, collected over several presses of the capture button. The state
/// stays where the caller keeps it; the session holds the rules. GUI thread.
class MergeSession
{
public:
    struct State
    {
        const int &pages; ///< pages per merged image, 2 to 4; may change between presses
        const int &dir;   ///< 0 vertical, 1 horizontal; may change between presses
        int &count;       ///< pages captured so far
        std::vector<QString> &paths;
    };

    explicit MergeSession(const State &state);

    /// False when as many pages as chosen, or more, are there already: that happens when the
    /// number was lowered in between, and presses then do nothing until it is raised again.
    bool wantsPage() const;

    /// True between merges; the thumbnails then belong to no page.
    bool isEmpty() const;

    /// Counts the page file `path`, which must have been captured; a failed capture is not
    /// reported here and so does not count. The page that completes the merge takes the list with
    /// it: a press that comes before the merge was done starts afresh and mixes nothing.
    MergeStep addPage(const QString &path);

private:
    State m_state;
};
