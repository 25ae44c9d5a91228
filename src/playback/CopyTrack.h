// A small copy of the file that is played, whose pictures are shown in place of the file's own. The file
// stays open: its sound goes on, and its length holds.
#pragma once

#include "playback/Mpv.h"
#include "playback/SourceFile.h"

#include <functional>

namespace pointloom::playback {

class CopyTrack {
public:
    /// `changed` is called when other pictures than before are shown from now on: a seek brings them to the
    /// screen. `handle` outlives this.
    CopyTrack(mpv_handle* handle, std::function<void()> changed);

    /// The copy of the present file; an empty path stands for the file's own pictures. It is shown while the
    /// file is open, and given up when it cannot be played, is deleted or changed.
    void setPath(const QString& path);
    const QString& path() const { return m_path; }

    /// The file was opened, or closed.
    void setFileIsOpen(bool isOpen);

    bool isShown() const { return m_isShown; }

    /// True as long as what libmpv says about the picture may be about a copy: since one was first added to
    /// the open file.
    bool mayBeSeen() const { return m_mayBeSeen; }

    /// True while libmpv opens a copy, also one that was given up since.
    bool isBeingAdded() const { return m_unanswered > 0; }

    /// False for an answer to others.
    bool handleReply(const mpv_event& event);

private:
    enum class Request : std::uint8_t { ownNumber, add, number };

    std::uint64_t idOf(Request what) const;
    void add();
    void remove();
    void selectOwn();
    void giveUp();

    mpv_handle* m_handle;
    std::function<void()> m_changed;
    SourceWatch m_watch;
    QString m_path;
    std::uint64_t m_attempt = 0;  // that answers belong to
    std::uint64_t m_openedAt = 0; // the first attempt since the file was opened comes after it
    int m_ownNumber = 1;          // of the file's track, as libmpv counts them
    int m_number = 0;             // of the copy's; 0 before it is known
    int m_unanswered = 0;         // requests to add a copy
    bool m_fileIsOpen = false;
    bool m_isShown = false;
    bool m_mayBeSeen = false;
};

}
