#include "imaging/svg/SvgStyle.h"

#include <algorithm>
#include <utility>

namespace {

struct Token {
    enum class Kind { Space, Identifier, Function, Hash, At, Text, Url, Other };
    Kind kind;
    QString text; ///< with escapes replaced by their characters
};
using Tokens = std::vector<Token>;

bool isNameStart(QChar c) {
    return c.isLetter() || c == u'_' || c.unicode() >= 0x80;
}
bool isName(QChar c) {
    return isNameStart(c) || c == u'-' || (c >= u'0' && c <= u'9');
}
bool isHexDigit(QChar c) {
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

class Tokenizer {
  public:
    explicit Tokenizer(QStringView text) : m_text(text) {}

    Tokens tokens() {
        Tokens found;
        while (m_at < m_text.size()) {
            if (!passComment())
                found.push_back(next());
        }
        return found;
    }

  private:
    QChar peek(qsizetype ahead = 0) const {
        return m_at + ahead < m_text.size() ? m_text[m_at + ahead] : QChar();
    }

    /// Passes over a comment, `<!--` or `-->`. False where none of them begins here.
    bool passComment() {
        for (const QLatin1String mark : {QLatin1String("<!--"), QLatin1String("-->")}) {
            if (m_text.mid(m_at).startsWith(mark)) {
                m_at += mark.size();
                return true;
            }
        }
        if (peek() != u'/' || peek(1) != u'*')
            return false;
        const qsizetype end = m_text.indexOf(QLatin1String("*/"), m_at + 2);
        m_at = end < 0 ? m_text.size() : end + 2;
        return true;
    }

    void passSpace() {
        while (m_at < m_text.size() && m_text[m_at].isSpace())
            ++m_at;
    }

    bool isEscape(qsizetype ahead = 0) const { return peek(ahead) == u'\\' && peek(ahead + 1) != u'\n'; }

    bool startsIdentifier() const {
        if (peek() == u'-')
            return isNameStart(peek(1)) || peek(1) == u'-' || isEscape(1);
        return isNameStart(peek()) || isEscape();
    }

    /// The character that the escape here stands for.
    QString escaped() {
        ++m_at;
        qsizetype end = m_at;
        while (end < m_text.size() && end < m_at + 6 && isHexDigit(m_text[end]))
            ++end;
        if (end == m_at) {
            QString character = m_text.mid(m_at, 1).toString();
            m_at = std::min(m_at + 1, m_text.size());
            return character;
        }
        const uint code = m_text.mid(m_at, end - m_at).toUInt(nullptr, 16);
        m_at = end;
        if (m_at < m_text.size() && m_text[m_at].isSpace())
            ++m_at;
        return QString::fromUcs4(reinterpret_cast<const char32_t*>(&code), 1);
    }

    QString name() {
        QString text;
        while (m_at < m_text.size()) {
            if (isEscape())
                text += escaped();
            else if (isName(m_text[m_at]))
                text += m_text[m_at++];
            else
                break;
        }
        return text;
    }

    QString quoted() {
        const QChar quote = m_text[m_at++];
        QString text;
        while (m_at < m_text.size() && m_text[m_at] != quote) {
            if (m_text[m_at] == u'\n')
                return text;
            if (peek() == u'\\' && peek(1) == u'\n')
                m_at += 2;
            else if (isEscape())
                text += escaped();
            else
                text += m_text[m_at++];
        }
        m_at = std::min(m_at + 1, m_text.size());
        return text;
    }

    /// The text after "url(", up to the closing parenthesis.
    QString url() {
        passSpace();
        const bool isQuoted = peek() == u'"' || peek() == u'\'';
        QString text = isQuoted ? quoted() : QString();
        while (m_at < m_text.size() && m_text[m_at] != u')') {
            QString more = isEscape() ? escaped() : QString(m_text[m_at++]);
            if (!isQuoted)
                text += more;
        }
        m_at = std::min(m_at + 1, m_text.size());
        return text.trimmed();
    }

    Token next() {
        const QChar c = m_text[m_at];
        if (c.isSpace()) {
            passSpace();
            return {Token::Kind::Space, QStringLiteral(" ")};
        }
        if (c == u'"' || c == u'\'')
            return {Token::Kind::Text, quoted()};
        if (c == u'#' && (isName(peek(1)) || isEscape(1))) {
            ++m_at;
            return {Token::Kind::Hash, u'#' + name()};
        }
        if (c == u'@') {
            ++m_at;
            return {Token::Kind::At, name().toLower()};
        }
        if (startsIdentifier())
            return identifier();
        ++m_at;
        return {Token::Kind::Other, QString(c)};
    }

    Token identifier() {
        QString text = name();
        if (peek() != u'(')
            return {Token::Kind::Identifier, text};
        ++m_at;
        if (text.compare(QLatin1String("url"), Qt::CaseInsensitive) == 0)
            return {Token::Kind::Url, url()};
        return {Token::Kind::Function, text};
    }

    QStringView m_text;
    qsizetype m_at = 0;
};

/// A range of tokens.
struct Span {
    const Token* begin;
    const Token* end;
};

Span whole(const Tokens& tokens) {
    return {tokens.data(), tokens.data() + tokens.size()};
}

bool is(const Token& token, char16_t character) {
    return token.kind == Token::Kind::Other && token.text == QChar(character);
}

/// The token that closes the bracket at `at`, or `end`. Brackets within it are passed over with their
/// contents.
const Token* closing(const Token* at, const Token* end) {
    QString wanted;
    for (; at != end; ++at) {
        if (at->kind == Token::Kind::Function || is(*at, u'('))
            wanted += u')';
        else if (is(*at, u'['))
            wanted += u']';
        else if (is(*at, u'{'))
            wanted += u'}';
        else if (is(*at, wanted.back().unicode()))
            wanted.chop(1);
        if (wanted.isEmpty())
            return at;
    }
    return end;
}

bool opens(const Token& token) {
    return token.kind == Token::Kind::Function || is(token, u'(') || is(token, u'[') || is(token, u'{');
}

/// The first token of `span` that is one of `ends` and stands outside of all brackets, or the span's end.
const Token* find(Span span, QStringView ends) {
    for (const Token* at = span.begin; at != span.end; ++at) {
        if (at->kind == Token::Kind::Other && ends.contains(at->text))
            return at;
        if (opens(*at))
            at = closing(at, span.end);
        if (at == span.end)
            break;
    }
    return span.end;
}

void addValue(SvgStyle::Declaration& declaration, Span span) {
    for (const Token* at = span.begin; at != span.end; ++at) {
        if (at->kind == Token::Kind::Url)
            declaration.urls << at->text;
        else
            declaration.value += at->kind == Token::Kind::Function ? at->text + u'(' : at->text;
    }
    declaration.value = declaration.value.trimmed();
}

std::vector<SvgStyle::Declaration> declarationsOf(Span span) {
    std::vector<SvgStyle::Declaration> found;
    while (span.begin != span.end) {
        const Token* end = find(span, u";");
        const Token* colon = find({span.begin, end}, u":");
        if (colon != end) {
            SvgStyle::Declaration declaration;
            for (const Token* at = span.begin; at != colon; ++at) {
                if (at->kind == Token::Kind::Identifier)
                    declaration.property += at->text.toLower();
            }
            addValue(declaration, {colon + 1, end});
            found.push_back(std::move(declaration));
        }
        span.begin = end == span.end ? end : end + 1;
    }
    return found;
}

/// What the last part of a selector asks of an element: its id; without an id its class; without a class its
/// name.
QString keyOf(Span selector) {
    QString id;
    QString className;
    QString element;
    bool isEnded = false;
    for (const Token* at = selector.begin; at != selector.end; ++at) {
        const bool isCombinator = is(*at, u'>') || is(*at, u'+') || is(*at, u'~');
        if (at->kind == Token::Kind::Space || isCombinator) {
            isEnded = true;
            continue;
        }
        if (std::exchange(isEnded, false)) {
            id.clear();
            className.clear();
            element.clear();
        }
        const bool follows = at != selector.begin;
        if (at->kind == Token::Kind::Hash)
            id = at->text;
        else if (at->kind == Token::Kind::Identifier && follows && is(at[-1], u'.'))
            className = u'.' + at->text;
        else if (at->kind == Token::Kind::Identifier && !(follows && is(at[-1], u':')))
            element = at->text;
        else if (is(*at, u'|'))
            element.clear();
        else if (opens(*at))
            at = closing(at, selector.end);
        if (at == selector.end)
            break;
    }
    if (!id.isEmpty())
        return id;
    return className.isEmpty() ? element : className;
}

void addRules(SvgStyle::Sheet& sheet, Span prelude, Span block) {
    const std::vector<SvgStyle::Declaration> declarations = declarationsOf(block);
    while (prelude.begin != prelude.end) {
        sheet.declarationCount += std::max<std::size_t>(1, declarations.size());
        if (sheet.declarationCount > SvgStyle::maximumDeclarations)
            return;
        const Token* end = find(prelude, u",");
        sheet.rules.push_back({keyOf({prelude.begin, end}), declarations});
        prelude.begin = end == prelude.end ? end : end + 1;
    }
}

void addSheet(SvgStyle::Sheet& sheet, Span span, int depth) {
    constexpr int maximumDepth = 8;
    while (span.begin != span.end) {
        if (span.begin->kind == Token::Kind::Space) {
            ++span.begin;
            continue;
        }
        const bool isAtRule = span.begin->kind == Token::Kind::At;
        const Token* open = find(span, isAtRule ? u"{;" : u"{");
        const bool hasBlock = open != span.end && is(*open, u'{');
        const Token* close = hasBlock ? closing(open, span.end) : open;
        if (!isAtRule && hasBlock)
            addRules(sheet, {span.begin, open}, {open + 1, close});
        if (isAtRule && span.begin->text == QLatin1String("import")) {
            for (const Token* at = span.begin; at != open; ++at) {
                if (at->kind == Token::Kind::Url || at->kind == Token::Kind::Text)
                    sheet.imports << at->text;
            }
        }
        const bool isGroup = isAtRule && (span.begin->text == QLatin1String("media") ||
                                          span.begin->text == QLatin1String("supports"));
        if (isGroup && hasBlock && depth < maximumDepth)
            addSheet(sheet, {open + 1, close}, depth + 1);
        span.begin = close == span.end ? close : close + 1;
    }
}

} // namespace

std::vector<SvgStyle::Declaration> SvgStyle::declarations(QStringView text) {
    const Tokens tokens = Tokenizer(text).tokens();
    return declarationsOf(whole(tokens));
}

SvgStyle::Declaration SvgStyle::attribute(const QString& property, QStringView value) {
    const Tokens tokens = Tokenizer(value).tokens();
    Declaration declaration{property, {}, {}};
    addValue(declaration, whole(tokens));
    return declaration;
}

SvgStyle::Sheet SvgStyle::sheet(QStringView text) {
    const Tokens tokens = Tokenizer(text).tokens();
    Sheet result;
    addSheet(result, whole(tokens), 0);
    return result;
}
