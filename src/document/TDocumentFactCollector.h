// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocumentFactList.h"
#include "document/TDocumentMail.h"

#include <functional>

/// The facts of a document's list as the next run needs them, kept until list or metadata change.
/// Those of a long list are collected in portions, between which painting and input have their
/// turn. Main thread only.
class TDocumentFactCollector
{
public:
    /// files is the document's list, which outlives the collector.
    TDocumentFactCollector(TDocumentMailPtr mail, const TFileList &files);

    /// The order of the list, or what is in it, is another one.
    void listChanged();
    /// More is known of a file.
    void metadataChanged();

    /// True when facts() takes no time that anybody would notice.
    bool areAtHand() const;
    /// Calls ready when they are, which may be at once; a newer call takes the place of this one.
    /// Files whose metadata come meanwhile are among the facts of this run as they were or as they
    /// are, and new in those of the next.
    void collect(std::function<void()> ready);
    bool isCollecting() const { return m_isCollecting; }
    /// What was collected so far stays good for the next time.
    void stop() { m_isCollecting = false; }
    /// Nothing will be wanted for a while.
    void forgetCollected();

    /// Collects what is missing at once.
    const TDocumentFacts &facts();
    /// The entries of facts(), which comes first.
    const TDocumentFiles &files() const { return m_entries; }

private:
    void collectPortion();
    void take();
    void forget();

    TDocumentMailPtr m_mail;
    const TFileList &m_files;
    TDocumentFacts m_facts; ///< null when something has changed since
    TDocumentFiles m_entries;
    TDocumentFactList m_collected; ///< the first ones
    TFileList m_collectedEntries;
    std::function<void()> m_ready;
    bool m_isCollecting = false;
    bool m_isPosted = false;
    bool m_isOutdated = false; ///< metadata have come since collecting began
};
