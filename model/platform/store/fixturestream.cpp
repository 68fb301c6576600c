#include "platform/store/fixturestream.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>

#include <rapidjson/error/en.h>
#include <rapidjson/filereadstream.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

namespace store {

namespace {

const QString kSource = QStringLiteral("sorrelin-store");
constexpr unsigned kParseFlags = rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;

using FilePtr = std::unique_ptr<FILE, int (*)(FILE *)>;

FilePtr openFile(const QString &path)
{
    FilePtr file(std::fopen(QFile::encodeName(path).constData(), "rb"), &std::fclose);
    if (!file)
        throw com::ComError(com::err::FileNotFound, kSource,
                            QStringLiteral("%1 could not be read: %2")
                                .arg(path, QString::fromLocal8Bit(std::strerror(errno))));
    return file;
}

/// Takes the document's streamed objects member by member and builds every
/// other value whole.
class Handler : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Handler> {
public:
    explicit Handler(FixtureEvents &events) : m_events(events) {}

    bool StartObject()
    {
        if (skipping(Opens::Object))
            return true;
        if (!m_parts.empty() || (!m_frames.empty() && !m_frames.back().inList)) {
            m_parts.push_back(Part{true, {}, {}, {}});
            return true;
        }
        if (m_frames.empty()) {
            m_frames.push_back(Frame{FixtureLevel::Document});
            m_events.begin(FixtureLevel::Document, 0);
            return true;
        }
        Frame &list = m_frames.back();
        const FixtureLevel level =
            list.level == FixtureLevel::Document ? FixtureLevel::Store : FixtureLevel::Folder;
        const int index = list.count++;
        m_frames.push_back(Frame{level});
        m_events.begin(level, index);
        return true;
    }
    bool EndObject(rapidjson::SizeType)
    {
        if (skipped())
            return true;
        if (!m_parts.empty())
            return close();
        m_frames.pop_back();
        m_events.end();
        return true;
    }
    bool StartArray()
    {
        if (m_skip > 0)
            return skipping(Opens::List);
        if (m_parts.empty() && !m_frames.empty()) {
            Frame &f = m_frames.back();
            if (f.inList)
                m_events.wrongShape(QStringLiteral("[%1]").arg(f.count++));
            if (f.key ==
                (f.level == FixtureLevel::Document ? QLatin1String("stores") : QLatin1String("folders"))) {
                f.inList = true;
                f.count = 0;
                m_events.beginList();
                return true;
            }
            if (skipping(Opens::List))
                return true;
        }
        m_parts.push_back(Part{false, {}, {}, {}});
        return true;
    }
    bool EndArray(rapidjson::SizeType)
    {
        if (skipped())
            return true;
        if (!m_parts.empty())
            return close();
        m_frames.back().inList = false;
        m_events.endList();
        return true;
    }
    bool Key(const char *text, rapidjson::SizeType length, bool)
    {
        if (m_skip > 0)
            return true;
        (m_parts.empty() ? m_frames.back().key : m_parts.back().key) = QString::fromUtf8(text, length);
        return true;
    }
    bool Null() { return value(QJsonValue(QJsonValue::Null)); }
    bool Bool(bool b) { return value(QJsonValue(b)); }
    bool Int(int i) { return value(QJsonValue(i)); }
    bool Uint(unsigned u) { return value(QJsonValue(static_cast<qint64>(u))); }
    bool Int64(int64_t i) { return value(QJsonValue(static_cast<qint64>(i))); }
    bool Uint64(uint64_t u) { return value(QJsonValue(static_cast<double>(u))); }
    bool Double(double d) { return value(QJsonValue(d)); }
    bool String(const char *text, rapidjson::SizeType length, bool)
    {
        return value(QJsonValue(QString::fromUtf8(text, length)));
    }

private:
    struct Frame {
        FixtureLevel level = FixtureLevel::Document;
        QString key = {};
        bool inList = false;
        int count = 0;
    };
    /// A list or object being built whole.
    struct Part {
        bool isObject;
        QJsonObject object;
        QJsonArray array;
        QString key;
    };

    bool value(const QJsonValue &v)
    {
        if (skipping(Opens::Nothing))
            return true;
        if (!m_parts.empty()) {
            Part &p = m_parts.back();
            if (p.isObject)
                p.object.insert(p.key, v);
            else
                p.array.append(v);
            return true;
        }
        if (m_frames.empty())
            m_events.wrongShape(QString());
        Frame &f = m_frames.back();
        if (f.inList)
            m_events.wrongShape(QStringLiteral("[%1]").arg(f.count++));
        m_events.member(f.key, v);
        return true;
    }

    bool close()
    {
        Part done = std::move(m_parts.back());
        m_parts.pop_back();
        return value(done.isObject ? QJsonValue(done.object) : QJsonValue(done.array));
    }

    /// What a value that begins opens.
    enum class Opens { Nothing, Object, List };

    /// Whether a value beginning here is one that the events don't take
    /// whole, or lies within one; counts the elements of the outermost.
    bool skipping(Opens opens)
    {
        if (m_skip == 0) {
            if (!m_parts.empty() || m_frames.empty() || m_frames.back().inList)
                return false;
            const Frame &f = m_frames.back();
            m_telling = m_events.telling(f.level, f.key);
            if (m_telling == FixtureEvents::Telling::Whole)
                return false;
            m_count = 0;
            m_listed = opens == Opens::List;
        } else if (m_skip == 1) {
            ++m_count;
        }
        if (opens != Opens::Nothing)
            ++m_skip;
        return true;
    }

    /// Whether the list or object ending here was skipped; the end of the
    /// outermost tells its count where one is wanted.
    bool skipped()
    {
        if (m_skip == 0)
            return false;
        if (--m_skip == 0 && m_telling == FixtureEvents::Telling::Count && m_listed)
            m_events.member(m_frames.back().key, QJsonValue(static_cast<qint64>(m_count)));
        return true;
    }

    FixtureEvents &m_events;
    std::vector<Frame> m_frames;
    std::vector<Part> m_parts;
    int m_skip = 0; ///< the depth within a value skipped
    FixtureEvents::Telling m_telling = FixtureEvents::Telling::Whole;
    bool m_listed = false; ///< the value skipped is a list
    qsizetype m_count = 0; ///< its elements so far
};

/// The words for a syntax error at `offset` of `text`: FILE:LINE:COLUMN.
com::ComError syntaxError(const QString &name, const QByteArray &before, rapidjson::ParseErrorCode code)
{
    const int line = static_cast<int>(before.count('\n')) + 1;
    const int column =
        static_cast<int>(QString::fromUtf8(before.mid(before.lastIndexOf('\n') + 1)).size()) + 1;
    return com::ComError(com::err::InvalidParameter, kSource,
                         QStringLiteral("%1:%2:%3: %4")
                             .arg(name)
                             .arg(line)
                             .arg(column)
                             .arg(QString::fromUtf8(rapidjson::GetParseError_En(code))));
}

} // namespace

void readFixtureFile(const QString &path, FixtureEvents &events)
{
    const FilePtr file = openFile(path);
    std::vector<char> buffer(1 << 16);
    rapidjson::FileReadStream stream(file.get(), buffer.data(), buffer.size());
    Handler handler(events);
    rapidjson::Reader reader;
    const rapidjson::ParseResult result = reader.Parse<kParseFlags>(stream, handler);
    if (!result) {
        QFile again(path);
        const QByteArray before =
            again.open(QIODevice::ReadOnly) ? again.read(result.Offset()) : QByteArray();
        throw FixtureSyntaxError{syntaxError(path, before, result.Code())};
    }
}

void readFixtureText(const QByteArray &text, FixtureEvents &events)
{
    rapidjson::MemoryStream stream(text.constData(), static_cast<size_t>(text.size()));
    Handler handler(events);
    rapidjson::Reader reader;
    const rapidjson::ParseResult result = reader.Parse<kParseFlags>(stream, handler);
    if (!result)
        throw FixtureSyntaxError{syntaxError(QStringLiteral("the fixture"),
                                             text.left(static_cast<qsizetype>(result.Offset())),
                                             result.Code())};
}

} // namespace store
