#pragma once

#include "platform/mapi/sessionstate.h"

#include <QList>
#include <QString>

namespace outlook {

/// One attachment: the file it was made from, the name it shows, and the
/// file name it goes out with (the source's, ending and all).
struct Attachment {
    QString path;
    QString displayName;
    QString fileName;
};

/// A mail item's attachments, in the order they were added.
class Attachments {
public:
    /// Adds a file by value. `type` (1, by value) and `position` are taken as
    /// the mail client takes them; the file is read when the item is sent.
    void Add(const QString &source, int type = 1, int position = 1, const QString &displayName = QString());
    int Count() const { return static_cast<int>(m_items.size()); }
    const QList<Attachment> &items() const { return m_items; }

private:
    QList<Attachment> m_items;
};

/// A new mail: `Display(true)` shows the compose window `olMailItem` and
/// returns when the user has sent or closed it. Send files it as an
/// "IPM.Note" in the "Outbox" of the profile's first mailbox, made if
/// missing; Close discards it.
class MailItem {
public:
    /// `state` is the mail client's session, where Send files the item.
    explicit MailItem(mapi::StatePtr state);

    QString Subject;
    QString To;
    QString Body;
    outlook::Attachments &Attachments() { return m_attachments; }

    void Display(bool modal);
    /// Files the item in the Outbox; raises when the store refuses.
    void Send();

private:
    mapi::StatePtr m_state;
    outlook::Attachments m_attachments;
};

/// The fields a sent item keeps beside its subject.
inline constexpr uint32_t PR_DISPLAY_TO = 0x0E04001E;
inline constexpr uint32_t PR_BODY = 0x1000001E;
/// The names of an attachment's fields on a sent item; `n` counts from 1.
QString attachmentNameField(int n);
QString attachmentFileNameField(int n);
QString attachmentDataField(int n);

} // namespace outlook
