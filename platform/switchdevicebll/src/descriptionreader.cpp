#include "descriptionreader.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QXmlStreamReader>

#include <functional>
#include <initializer_list>

namespace ovra {
namespace bll {

namespace {

constexpr qint64 kLargestFile = 1048576;
constexpr int kDeepestNesting = 8;
constexpr int kLongestText = 200;
constexpr PortRange kTimeoutBounds{1, 600}; // seconds

using Names = std::initializer_list<const char *>;

bool holds(const Names &names, const QStringRef &name)
{
    for (const char *one : names) {
        if (name == QLatin1String(one))
            return true;
    }
    return false;
}

class Reader
{
public:
    explicit Reader(const QByteArray &content)
        : _xml(content)
    {}

    ReadDescription read(const QString &path);

private:
    struct Child
    {
        const char *name;
        std::function<void()> read;
    };
    enum class TextRule { Filled, MayBeEmpty, FilledLines, Lines };
    struct Scope
    {
        QString getter;
        CommandScope line;
        int depth = 0;
    };

    void fail(const QString &reason)
    {
        if (!_xml.hasError()) // the first fault is the one to name
            _xml.raiseError(reason);
    }

    void document();
    void children(const std::vector<Child> &known);
    void sequence(const std::vector<Child> &required);
    void leaf() { children({}); }
    void attributes(const Names &required, const Names &optional = {});
    QString attribute(const char *name) const { return _attributes.value(QLatin1String(name)).toString(); }
    QString checkedText(const char *name, TextRule rule = TextRule::Filled);
    QByteArray bytesOf(const char *name) { return checkedText(name).toUtf8(); }
    QByteArray commandOf(const char *name);
    QByteArray linesOf(const char *name, TextRule rule);
    int numberOf(const char *name, const PortRange &bounds);
    QByteArray textOfLeaf();
    QByteArray commandOfLeaf();

    void root();
    void interfaces();
    void interfaceType();
    void limits();
    void limit();
    void session();
    void prompts();
    void prompt();
    void pagers();
    void erasure();
    void login();
    void questions();
    void question();
    void timing();
    void errors();

    void replies();
    void rules(const QByteArray &command);
    void rule(ReplyRule::Kind kind, const QByteArray &command);

    void commandBlocks();
    void block();
    CommandList commands(const Scope &scope);
    void line(const Scope &scope, CommandList *list);
    void pageKeyItem(CommandList *list);
    void choice(const Scope &scope, CommandList *list);
    bool canBe(const ValueSpec &value, const QString &is) const;
    void branch(const Scope &scope, CommandNode *node);
    void repetition(const Scope &scope, CommandList *list);

    void checkWhole();
    void checkRulesOfExport();

    QXmlStreamReader _xml;
    QXmlStreamAttributes _attributes; // of the element that is being read
    std::shared_ptr<DeviceDescription> _description = std::make_shared<DeviceDescription>();
};

ReadDescription Reader::read(const QString &path)
{
    _description->path = path;
    document();
    if (!_xml.hasError())
        return ReadDescription{_description, {}};
    return ReadDescription{
        nullptr, QStringLiteral("%1:%2: %3").arg(path, QString::number(_xml.lineNumber()), _xml.errorString())};
}

void Reader::document()
{
    while (!_xml.atEnd()) {
        switch (_xml.readNext()) {
        case QXmlStreamReader::DTD: // nothing may define entities
            fail(QStringLiteral("a document type declaration is not allowed"));
            break;
        case QXmlStreamReader::StartElement:
            if (_xml.qualifiedName() == QLatin1String("device-description"))
                root();
            else
                fail(QStringLiteral("this is not a device description"));
            break;
        default:
            break;
        }
    }
}

// Reads up to the end of the current element; each child by the function of its name.
void Reader::children(const std::vector<Child> &known)
{
    const QString parent = _xml.name().toString();
    while (!_xml.atEnd()) {
        switch (_xml.readNext()) {
        case QXmlStreamReader::StartElement: {
            const QString name = _xml.qualifiedName().toString();
            const Child *child = nullptr;
            for (const Child &one : known) {
                if (name == QLatin1String(one.name))
                    child = &one;
            }
            if (child == nullptr)
                fail(QStringLiteral("<%1> does not belong into <%2>").arg(name, parent));
            else
                child->read();
            break;
        }
        case QXmlStreamReader::EndElement:
            return;
        case QXmlStreamReader::Characters:
            if (!_xml.isWhitespace())
                fail(QStringLiteral("<%1> holds a text").arg(parent));
            break;
        default:
            break;
        }
    }
}

// Each of the children exactly once, in this order.
void Reader::sequence(const std::vector<Child> &required)
{
    const QString parent = _xml.name().toString();
    std::size_t next = 0;
    std::vector<Child> ordered;
    for (std::size_t i = 0; i < required.size(); ++i) {
        ordered.push_back(
            {required[i].name, [this, i, &next, &required, &parent] {
                 if (i < next)
                     fail(QStringLiteral("<%1> stands twice in <%2>").arg(QLatin1String(required[i].name), parent));
                 else if (i > next)
                     fail(QStringLiteral("<%1> is missing in <%2>").arg(QLatin1String(required[next].name), parent));
                 else
                     required[i].read();
                 ++next;
             }});
    }
    children(ordered);
    if (next < required.size())
        fail(QStringLiteral("<%1> is missing in <%2>").arg(QLatin1String(required[next].name), parent));
}

void Reader::attributes(const Names &required, const Names &optional)
{
    _attributes = _xml.attributes();
    const QString element = _xml.name().toString();
    for (const QXmlStreamAttribute &one : qAsConst(_attributes)) {
        if (!holds(required, one.qualifiedName()) && !holds(optional, one.qualifiedName()))
            fail(QStringLiteral("<%1> has no attribute \"%2\"").arg(element, one.qualifiedName().toString()));
    }
    for (const char *name : required) {
        if (!_attributes.hasAttribute(QLatin1String(name)))
            fail(QStringLiteral("<%1> lacks the attribute \"%2\"").arg(element, QLatin1String(name)));
    }
}

QString Reader::checkedText(const char *name, TextRule rule)
{
    QString text = attribute(name);
    const bool mayBeEmpty = rule == TextRule::MayBeEmpty || rule == TextRule::Lines;
    const bool mayHoldLines = rule == TextRule::FilledLines || rule == TextRule::Lines;
    if ((text.isEmpty() && !mayBeEmpty) || text.size() > kLongestText)
        fail(QStringLiteral("\"%1\" is empty or longer than %2 characters").arg(QLatin1String(name)).arg(kLongestText));
    for (const QChar character : text) {
        if (!character.isPrint() && !(mayHoldLines && character == QLatin1Char('\n')))
            fail(QStringLiteral("\"%1\" holds a control character").arg(QLatin1String(name)));
    }
    return text;
}

QByteArray Reader::commandOf(const char *name)
{
    QByteArray command = bytesOf(name).simplified();
    if (command.isEmpty())
        fail(QStringLiteral("\"%1\" names no command").arg(QLatin1String(name)));
    return command;
}

// The switch ends its lines with CR LF, XML knows LF only.
QByteArray Reader::linesOf(const char *name, TextRule rule)
{
    return checkedText(name, rule).toUtf8().replace("\n", "\r\n");
}

int Reader::numberOf(const char *name, const PortRange &bounds)
{
    bool isNumber = false;
    const int number = attribute(name).toInt(&isNumber);
    if (!isNumber || number < bounds.min || number > bounds.max) {
        fail(QStringLiteral("\"%1\" is not a number from %2 to %3")
                 .arg(QLatin1String(name))
                 .arg(bounds.min)
                 .arg(bounds.max));
        return bounds.min;
    }
    return number;
}

// An element with a text attribute and nothing else.
QByteArray Reader::textOfLeaf()
{
    attributes({"text"});
    QByteArray text = bytesOf("text");
    leaf();
    return text;
}

// The same with a command.
QByteArray Reader::commandOfLeaf()
{
    attributes({"command"});
    QByteArray command = commandOf("command");
    leaf();
    return command;
}

void Reader::root()
{
    attributes({"format", "name"}, {"slot", "snooping-joiner"});
    numberOf("format", {1, 1});
    _description->name = checkedText("name");
    if (_attributes.hasAttribute(QLatin1String("slot")))
        _description->slot = numberOf("slot", boundsOf(QStringLiteral("slot")).value_or(PortRange()));
    if (_attributes.hasAttribute(QLatin1String("snooping-joiner"))) {
        const QString joiner = attribute("snooping-joiner");
        if (joiner != QLatin1String("-") && joiner != QLatin1String(" "))
            fail(QStringLiteral("\"snooping-joiner\" is neither a hyphen nor a blank"));
        _description->snoopingJoiner = joiner;
    }
    sequence({{"interfaces", [this] { interfaces(); }},
              {"limits", [this] { limits(); }},
              {"session", [this] { session(); }},
              {"replies", [this] { replies(); }},
              {"commands", [this] { commandBlocks(); }}});
    if (!_xml.hasError())
        checkWhole();
}

void Reader::interfaces()
{
    attributes({"default", "separator", "subslot"});
    InterfaceNames &names = _description->interfaces;
    names.defaultType = checkedText("default");
    names.separator = attribute("separator");
    if (!names.separator.isEmpty() && names.separator != QLatin1String(" "))
        fail(QStringLiteral("\"separator\" is neither empty nor a blank"));
    names.subslot = numberOf("subslot", {0, 255});
    children({{"interface", [this] { interfaceType(); }}});
    const std::optional<QString> full = names.fullType(names.defaultType);
    if (full != names.defaultType)
        fail(QStringLiteral("the default interface \"%1\" is none of the interfaces").arg(names.defaultType));
}

void Reader::interfaceType()
{
    attributes({"name"}, {"aliases"});
    InterfaceType type;
    type.name = checkedText("name");
    type.aliases =
        checkedText("aliases", TextRule::MayBeEmpty).simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const QStringList texts = QStringList(type.name) + type.aliases;
    for (const QString &text : texts) {
        const std::optional<PortText> port = splitPort(text + QStringLiteral("0/0/1"));
        if (!port || port->type != text)
            fail(QStringLiteral("\"%1\" is not an interface type").arg(text));
        if (_description->interfaces.fullType(text))
            fail(QStringLiteral("\"%1\" stands for two interface types").arg(text));
    }
    _description->interfaces.types.push_back(type);
    leaf();
}

void Reader::limits()
{
    attributes({});
    children({{"limit", [this] { limit(); }}});
}

void Reader::limit()
{
    attributes({"value", "min", "max"});
    const QString value = attribute("value");
    const std::optional<PortRange> bounds = boundsOf(value);
    if (!bounds)
        fail(QStringLiteral("there is no number \"%1\"").arg(value));
    if (_description->limits.count(value) > 0)
        fail(QStringLiteral("\"%1\" has two limits").arg(value));
    const PortRange hard = bounds.value_or(PortRange());
    const int min = numberOf("min", hard);
    _description->limits[value] = PortRange{min, numberOf("max", {min, hard.max})};
    leaf();
}

void Reader::session()
{
    attributes({});
    sequence({{"prompts", [this] { prompts(); }},
              {"pagers", [this] { pagers(); }},
              {"login", [this] { login(); }},
              {"errors", [this] { errors(); }},
              {"questions", [this] { questions(); }},
              {"timing", [this] { timing(); }}});
}

void Reader::errors()
{
    attributes({});
    SessionFacts &facts = _description->session;
    children({{"error", [this, &facts] { facts.errorTexts << textOfLeaf(); }},
              {"free-text", [this, &facts] { facts.freeTextExceptions << commandOfLeaf(); }},
              {"notice", [this, &facts] { facts.noticeTexts << textOfLeaf(); }},
              {"expected", [this, &facts] { facts.expectedRefusals << commandOfLeaf(); }}});
}

void Reader::prompts()
{
    attributes({"name-characters"});
    SessionFacts &facts = _description->session;
    facts.promptNameCharacters = bytesOf("name-characters");
    children({{"prompt", [this] { prompt(); }}, {"prefix", [this, &facts] { facts.promptPrefixes << textOfLeaf(); }}});
    if (facts.prompts.empty())
        fail(QStringLiteral("<prompt> is missing in <prompts>"));
}

void Reader::prompt()
{
    attributes({"view", "begin", "end"}, {"marks"});
    PromptShape shape;
    const QString view = attribute("view");
    if (view != QLatin1String("user") && view != QLatin1String("configuration"))
        fail(QStringLiteral("\"view\" is neither user nor configuration"));
    shape.isUserView = view == QLatin1String("user");
    shape.begin = bytesOf("begin");
    shape.end = bytesOf("end");
    shape.marks = checkedText("marks", TextRule::MayBeEmpty).toUtf8();
    _description->session.prompts.push_back(shape);
    leaf();
}

void Reader::pagers()
{
    attributes({});
    SessionFacts &facts = _description->session;
    children({{"pager", [this, &facts] { facts.pagerTexts << textOfLeaf(); }}, {"erasure", [this] { erasure(); }}});
}

void Reader::erasure()
{
    attributes({"by"});
    const QString by = attribute("by");
    std::vector<PagerErasure> &erasures = _description->session.pagerErasures;
    if (by == QLatin1String("cursor-left"))
        erasures.push_back(PagerErasure::CursorLeft);
    else if (by == QLatin1String("carriage-return"))
        erasures.push_back(PagerErasure::CarriageReturn);
    else if (by == QLatin1String("backspace"))
        erasures.push_back(PagerErasure::Backspace);
    else
        fail(QStringLiteral("\"%1\" erases no pager text").arg(by));
    leaf();
}

void Reader::login()
{
    attributes({});
    SessionFacts &facts = _description->session;
    const auto into = [this](QByteArrayList *list) { return [this, list] { *list << textOfLeaf(); }; };
    children({{"user-name-prompt", into(&facts.userNamePrompts)},
              {"password-prompt", into(&facts.passwordPrompts)},
              {"new-password", into(&facts.newPasswordTexts)},
              {"failure", into(&facts.failureTexts)},
              {"press-enter", into(&facts.pressEnterTexts)},
              {"interrupt", into(&facts.interruptTexts)}});
}

void Reader::questions()
{
    attributes({});
    SessionFacts &facts = _description->session;
    children(
        {{"ending", [this, &facts] { facts.questionEndings << textOfLeaf(); }}, {"question", [this] { question(); }}});
}

void Reader::question()
{
    attributes({"answer"}, {"command", "text"});
    KnownQuestion known;
    known.command = checkedText("command", TextRule::MayBeEmpty).simplified().toUtf8();
    known.text = checkedText("text", TextRule::MayBeEmpty).trimmed().toUtf8();
    known.answer = checkedText("answer", TextRule::MayBeEmpty).toUtf8();
    if (known.command.isEmpty() && known.text.isEmpty())
        fail(QStringLiteral("a question names its text or its command"));
    _description->session.questions.push_back(known);
    leaf();
}

void Reader::timing()
{
    attributes({});
    SessionFacts &facts = _description->session;
    children({{"slow",
               [this, &facts] {
                   attributes({"command", "seconds"});
                   const std::chrono::seconds timeout(numberOf("seconds", kTimeoutBounds));
                   facts.slowCommands.push_back({commandOf("command"), timeout});
                   leaf();
               }},
              {"restart", [this, &facts] { facts.restarts << commandOfLeaf(); }}});
}

void Reader::replies()
{
    attributes({});
    children({{"login-dialogue",
               [this] {
                   attributes({});
                   rules({});
               }},
              {"reply", [this] {
                   attributes({"to"});
                   rules(commandOf("to"));
               }}});
}

void Reader::rules(const QByteArray &command)
{
    const auto as = [this, &command](ReplyRule::Kind kind) { return [this, &command, kind] { rule(kind, command); }; };
    children({{"replace", as(ReplyRule::Kind::Replace)},
              {"drop", as(ReplyRule::Kind::Drop)},
              {"move-to-end", as(ReplyRule::Kind::Move)},
              {"end", as(ReplyRule::Kind::End)}});
}

void Reader::rule(ReplyRule::Kind kind, const QByteArray &command)
{
    ReplyRule rule;
    rule.kind = kind;
    rule.command = command;
    const char *text = "line";
    if (kind == ReplyRule::Kind::Replace) {
        attributes({"text", "with"}, {"at"});
        text = "text";
        rule.with = linesOf("with", TextRule::Lines);
        const bool hasPlace = _attributes.hasAttribute(QLatin1String("at"));
        if (hasPlace && attribute("at") != QLatin1String("line-start"))
            fail(QStringLiteral("\"at\" is not line-start"));
        rule.atLineStart = hasPlace;
    } else if (kind == ReplyRule::Kind::End) {
        attributes({"behind"});
        text = "behind";
    } else {
        attributes({"line"});
    }
    rule.text = linesOf(text, TextRule::FilledLines);
    _description->replyRules.push_back(rule);
    leaf();
}

void Reader::commandBlocks()
{
    attributes({});
    children({{"block", [this] { block(); }}});
}

void Reader::block()
{
    attributes({"getter"});
    Scope scope;
    scope.getter = attribute("getter");
    scope.line.hasJoiner = !_description->snoopingJoiner.isEmpty();
    if (!getterNames().contains(scope.getter))
        fail(QStringLiteral("there is no command list \"%1\"").arg(scope.getter));
    if (_description->blocks.count(scope.getter) > 0)
        fail(QStringLiteral("\"%1\" stands here twice").arg(scope.getter));
    _description->blocks[scope.getter] = commands(scope);
}

CommandList Reader::commands(const Scope &scope)
{
    if (scope.depth > kDeepestNesting)
        fail(QStringLiteral("the nesting is deeper than %1").arg(kDeepestNesting));
    CommandList list;
    children({{"line", [this, &scope, &list] { line(scope, &list); }},
              {"page-key", [this, &list] { pageKeyItem(&list); }},
              {"choose", [this, &scope, &list] { choice(scope, &list); }},
              {"repeat", [this, &scope, &list] { repetition(scope, &list); }}});
    return list;
}

void Reader::line(const Scope &scope, CommandList *list)
{
    attributes({});
    const QString text = _xml.readElementText(QXmlStreamReader::ErrorOnUnexpectedElement);
    if (_xml.hasError())
        return;
    const ParsedLine parsed = parseLine(text, scope.line);
    if (!parsed.error.isEmpty())
        fail(parsed.error);
    CommandNode node;
    node.line = parsed.line;
    list->push_back(std::move(node));
}

void Reader::pageKeyItem(CommandList *list)
{
    attributes({});
    leaf();
    CommandNode node;
    node.kind = CommandNode::Kind::PageKey;
    list->push_back(std::move(node));
}

void Reader::choice(const Scope &scope, CommandList *list)
{
    attributes({"value"});
    CommandNode node;
    node.kind = CommandNode::Kind::Choice;
    node.value = findValue(attribute("value"));
    const bool fits = node.value != nullptr
                      && (node.value->kind == ValueKind::Word || node.value->kind == ValueKind::Ports
                          || node.value->kind == ValueKind::Port);
    if (!fits)
        fail(QStringLiteral("nothing can be chosen by \"%1\"").arg(attribute("value")));
    Scope inner = scope;
    ++inner.depth;
    children({{"when", [this, &inner, &node] { branch(inner, &node); }},
              {"otherwise", [this, &inner, &node] {
                   attributes({});
                   if (node.otherwise)
                       fail(QStringLiteral("<otherwise> stands here twice"));
                   node.otherwise = commands(inner);
               }}});
    list->push_back(std::move(node));
}

bool Reader::canBe(const ValueSpec &value, const QString &is) const
{
    if (value.kind == ValueKind::Port) // "interfaces" has been read before
        return is.isEmpty() || is == QLatin1String("all") || _description->interfaces.fullType(is) == is;
    return value.choices.contains(is);
}

void Reader::branch(const Scope &scope, CommandNode *node)
{
    attributes({"is"});
    const QString is = attribute("is");
    if (node->value != nullptr && !canBe(*node->value, is))
        fail(QStringLiteral("\"%1\" is never \"%2\"").arg(node->value->name, is));
    for (const CommandBranch &present : node->branches) {
        if (present.is == is)
            fail(QStringLiteral("\"%1\" stands here twice").arg(is));
    }
    node->branches.push_back({is, commands(scope)});
}

void Reader::repetition(const Scope &scope, CommandList *list)
{
    attributes({"over"});
    CommandNode node;
    node.kind = CommandNode::Kind::Repetition;
    node.value = findValue(attribute("over"));
    const bool isRange = node.value != nullptr && node.value->kind == ValueKind::Ports;
    const bool isList =
        node.value != nullptr && node.value->kind == ValueKind::PortList
        && scope.getter == QLatin1String("getInterfaceCommandsForPorts"); // the only one that is given a list
    if (!isRange && !isList)
        fail(QStringLiteral("nothing can be repeated over \"%1\" here").arg(attribute("over")));
    if (scope.line.isRepeated)
        fail(QStringLiteral("a repetition stands within a repetition"));
    Scope inner = scope;
    inner.line.isRepeated = true;
    ++inner.depth;
    node.repeated = commands(inner);
    list->push_back(std::move(node));
}

void Reader::checkWhole()
{
    for (const QString &getter : getterNames()) {
        if (_description->blocks.count(getter) == 0)
            fail(QStringLiteral("the command list \"%1\" is missing").arg(getter));
    }
    if (!_xml.hasError())
        checkRulesOfExport();
}

// An exported configuration is what the switch wrote and nothing else.
void Reader::checkRulesOfExport()
{
    for (const CommandNode &node : _description->blocks.at(QStringLiteral("getExportCommands"))) {
        if (node.kind == CommandNode::Kind::PageKey)
            continue;
        const bool isPlain = node.kind == CommandNode::Kind::Line && node.line.size() == 1 && !node.line[0].placeholder;
        if (!isPlain) {
            fail(QStringLiteral("the export list holds more than plain lines"));
            return;
        }
        const QByteArray command = node.line[0].text.toUtf8();
        for (const ReplyRule &rule : _description->replyRules) {
            if (!rule.command.isEmpty() && isCommand(command, rule.command))
                fail(QStringLiteral("a reply rule names \"%1\" of the export list").arg(node.line[0].text));
        }
    }
}

} // namespace

ReadDescription readDescription(const QString &path)
{
    const QString shown = QDir::toNativeSeparators(path);
    if (path.isEmpty())
        return ReadDescription{nullptr, QStringLiteral("no device description is named")};
    QFile file(path);
    if (!QFileInfo::exists(path))
        return ReadDescription{nullptr, QStringLiteral("%1:0: there is no such file").arg(shown)};
    // A pipe or device might never end, or never begin.
    if (!QFileInfo(path).isFile())
        return ReadDescription{nullptr, QStringLiteral("%1:0: this is not a file").arg(shown)};
    if (!file.open(QIODevice::ReadOnly))
        return ReadDescription{nullptr, QStringLiteral("%1:0: %2").arg(shown, file.errorString())};
    const QByteArray content = file.read(kLargestFile + 1);
    if (content.size() > kLargestFile)
        return ReadDescription{nullptr,
                               QStringLiteral("%1:0: the file is larger than %2 bytes").arg(shown).arg(kLargestFile)};
    return parseDescription(content, shown);
}

ReadDescription parseDescription(const QByteArray &content, const QString &path)
{
    return Reader(content).read(path);
}

} // namespace bll
} // namespace ovra
