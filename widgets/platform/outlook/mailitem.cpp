#include "platform/outlook/mailitem.h"

#include "platform/mapi/tags.h"
#include "platform/outlook/mailwindow.h"

#include <QFile>
#include <QFileInfo>

namespace outlook {

namespace {

const QString kSource = QStringLiteral("Microsoft Outlook");

QString tagName(uint32_t tag)
{
    return QStringLiteral("0x") + QString::number(tag, 16).toUpper().rightJustified(8, QLatin1Char('0'));
}

/// The Outbox of the first mailbox store, made below its top folder when it
/// isn't there.
qint64 outbox(store::Database &db)
{
    const QVariant storeRow = db.scalar(QStringLiteral("SELECT id FROM stores ORDER BY seq, id LIMIT 1"));
    if (!storeRow.isValid())
        throw com::ComError(com::err::CallFailed, kSource, QStringLiteral("The profile has no mailbox."));
    const QVariant top = db.scalar(
        QStringLiteral("SELECT id FROM folders WHERE store = ? AND parent IS NULL ORDER BY seq, id LIMIT 1"),
        {storeRow});
    if (!top.isValid())
        throw com::ComError(com::err::CallFailed, kSource, QStringLiteral("The mailbox has no top folder."));
    const QVariant found = db.scalar(
        QStringLiteral("SELECT id FROM folders WHERE parent = ? AND name = 'Outbox' LIMIT 1"), {top});
    if (found.isValid())
        return found.toLongLong();
    const qint64 seq =
        db.scalar(QStringLiteral("SELECT COALESCE(MAX(seq), -1) + 1 FROM folders WHERE parent = ?"), {top})
            .toLongLong();
    const qint64 row =
        db.insert(QStringLiteral("INSERT INTO folders(store, parent, seq, name) VALUES(?, ?, ?, 'Outbox')"),
                  {storeRow, top, seq});
    db.assignEntryId(store::IdKind::Folder, storeRow.toLongLong(), row);
    return row;
}

} // namespace

QString attachmentNameField(int n)
{
    return QStringLiteral("Attachment%1.Name").arg(n);
}

QString attachmentFileNameField(int n)
{
    return QStringLiteral("Attachment%1.FileName").arg(n);
}

QString attachmentDataField(int n)
{
    return QStringLiteral("Attachment%1.Data").arg(n);
}

void Attachments::Add(const QString &source, int type, int position, const QString &displayName)
{
    Q_UNUSED(type);
    if (!QFileInfo(source).isFile())
        throw com::ComError(com::err::CallFailed, kSource,
                            QStringLiteral("Cannot find this file: %1").arg(source));
    const QString name = displayName.isEmpty() ? QFileInfo(source).fileName() : displayName;
    m_items.insert(qBound(0, position - 1, Count()), Attachment{source, name, QFileInfo(source).fileName()});
}

MailItem::MailItem(mapi::StatePtr state) : m_state(std::move(state)) {}

void MailItem::Display(bool modal)
{
    auto *window = new MailWindow(*this); // deletes itself when closed
    if (!modal) {
        window->show();
        return;
    }
    window->exec();
}

void MailItem::Send()
{
    if (!m_state || !m_state->db)
        throw com::ComError(com::err::CallFailed, kSource,
                            QStringLiteral("The mail client is not logged on."));
    m_state->check();
    store::Database &db = *m_state->db;
    // The attachments' bytes as they are now.
    QList<QByteArray> data;
    for (const Attachment &a : m_attachments.items()) {
        QFile file(a.path);
        if (!file.open(QIODevice::ReadOnly))
            throw com::ComError(com::err::CallFailed, kSource,
                                QStringLiteral("Cannot read %1: %2").arg(a.path, file.errorString()));
        data.append(file.readAll());
    }
    db.transaction([&] {
        const qint64 folder = outbox(db);
        const QString now = store::Database::now();
        const qint64 row =
            db.insert(QStringLiteral("INSERT INTO messages(folder, hidden, class, subject, created,"
                                     " modified) VALUES(?, 0, 'IPM.Note', ?, ?, ?)"),
                      {folder, Subject, now, now});
        const qint64 storeRow =
            db.scalar(QStringLiteral("SELECT store FROM folders WHERE id = ?"), {folder}).toLongLong();
        db.assignEntryId(store::IdKind::Message, storeRow, row);
        const auto field = [&](const QString &tag, const QByteArray &value) {
            db.run(QStringLiteral("INSERT INTO fields(message, tag, value) VALUES(?, ?, ?)"),
                   {row, tag, value});
        };
        field(tagName(PR_DISPLAY_TO), To.toLatin1());
        field(tagName(PR_BODY), Body.toLatin1());
        for (int i = 0; i < data.size(); ++i) {
            const Attachment &a = m_attachments.items().at(i);
            field(attachmentNameField(i + 1), a.displayName.toLatin1());
            field(attachmentFileNameField(i + 1), a.fileName.toLatin1());
            field(attachmentDataField(i + 1), data.at(i));
        }
    });
}

} // namespace outlook
