#include "transceiverparser.h"

#include "linepattern.h"

namespace reply {

namespace {

class TransceiverReader
{
public:
    explicit TransceiverReader(const InterfaceNamingProfile &naming)
        : _downPort(naming.downPortPattern, LinePattern::Dialect::QtRegExp)
        , _upPort(naming.upPortPattern, LinePattern::Dialect::QtRegExp)
    {}

    void read(const ReplyLine &line)
    {
        if (line.has(Keyword::TransceiverHeader))
            beginPort(line);
        else if (line.has(Keyword::TransceiverAbsent))
            noteAbsent(line);
        else if (_isInBlock && isDetail(line))
            _block.details.append(line.text.trimmed()).append(QLatin1Char('\n'));
    }

    TransceiverListing finish()
    {
        if (!_block.details.isEmpty())
            _listing.last = std::move(_block);
        return std::move(_listing);
    }

private:
    static bool isDetail(const ReplyLine &line)
    {
        return line.has(Keyword::TransceiverType) || line.has(Keyword::ConnectorType) || line.has(Keyword::Wavelength);
    }

    static std::optional<QStringView> portIn(const ReplyLine &line, const LinePattern &pattern)
    {
        if (line.text.size() > kLongestLine) // before trimming: a line's length is what the switch wrote
            return std::nullopt;
        const auto match = pattern.firstMatch(line.text.trimmed());
        return match ? std::optional(match->whole) : std::nullopt;
    }

    void beginPort(const ReplyLine &line)
    {
        if (!_block.isEmpty())
            _listing.logged.push_back(std::move(_block));
        _block = TransceiverNote();
        _block.port = portIn(line, _downPort);
        // A faster port's name may hold a gigabit port's ("10GE0/0/1"): the longer name counts.
        if (const auto port = portIn(line, _upPort))
            _block.port = port;
        _isInBlock = _isInBlock || _block.port.has_value();
    }

    void noteAbsent(const ReplyLine &line)
    {
        if (const auto port = portIn(line, _downPort)) {
            TransceiverNote note;
            note.isAbsent = true;
            note.port = port;
            _listing.logged.push_back(std::move(note));
        }
        _isInBlock = false;
    }

    const LinePattern _downPort;
    const LinePattern _upPort;
    TransceiverNote _block;
    bool _isInBlock = false;
    TransceiverListing _listing;
};

} // namespace

QString TransceiverNote::text(const QString &title) const
{
    return port ? port->toString() + title + details : details;
}

TransceiverListing readTransceivers(const ReplyText &reply, const InterfaceNamingProfile &naming)
{
    TransceiverReader reader(naming);
    for (const ReplyLine &line : reply.lines())
        reader.read(line);
    return reader.finish();
}

} // namespace reply
