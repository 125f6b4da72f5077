#include "examples/collada/Document.h"

#include "examples/collada/Numbers.h"

#include <algorithm>

namespace velmoran::examples::collada
{
namespace
{
constexpr std::size_t MAX_QUOTED = 60;
constexpr int MAX_CLIMB = 32;

/// The next element in document order below `top`; past the children of `element`
/// unless `descend`.
pugi::xml_node advance(pugi::xml_node element, const pugi::xml_node& top, bool descend)
{
    if (descend && element.first_child())
    {
        return element.first_child();
    }
    while (element && element != top && !element.next_sibling())
    {
        element = element.parent();
    }
    return element == top ? pugi::xml_node() : element.next_sibling();
}

std::string describe(const pugi::xml_node& element)
{
    const std::string tag = std::string("<") + element.name();
    const pugi::xml_attribute id = element.attribute("id");
    return id ? tag + " id=" + quote(id.value()) + ">" : tag + ">";
}

/// Names an element without ID by the nearest one around it that has one.
std::string describeInContext(const pugi::xml_node& element)
{
    if (element.attribute("id"))
    {
        return describe(element);
    }
    pugi::xml_node around = element.parent();
    for (int i = 0; i < MAX_CLIMB && around; ++i, around = around.parent())
    {
        if (around.attribute("id"))
        {
            return describe(element) + " of " + describe(around);
        }
    }
    return describe(element);
}

std::string listKinds(Document::Kinds kinds)
{
    std::string list;
    for (const char* kind : kinds)
    {
        list += (list.empty() ? "<" : " or <") + std::string(kind) + ">";
    }
    return list;
}

std::string kindKey(const char* kind, const std::string& id)
{
    return kind + (' ' + id);
}

/// Keeps a message on one line whatever the document wrote into its names.
std::string onOneLine(std::string message)
{
    const auto isControl = [](char c) { return (c >= 0 && c < ' ') || c == 0x7F; };
    std::replace_if(message.begin(), message.end(), isControl, '?');
    return message;
}
} // namespace

Document::Document(std::string text, std::string displayName)
    : m_text(std::move(text)), m_displayName(std::move(displayName))
{
    parse();
    indexIDs();
}

pugi::xml_node Document::getRoot() const
{
    return m_document.document_element();
}

std::size_t Document::getSize() const
{
    return m_text.size();
}

void Document::parse()
{
    const pugi::xml_parse_result result = m_document.load_buffer(m_text.data(), m_text.size());
    m_hasLines = result.encoding == pugi::encoding_utf8;
    if (!result)
    {
        failParsing(result);
    }
    const pugi::xml_node root = getRoot();
    if (std::string_view(root.name()) != "COLLADA")
    {
        fail(root, "the root element of a COLLADA document is <COLLADA>");
    }
    for (pugi::xml_node next = root.next_sibling(); next; next = next.next_sibling())
    {
        if (next.type() == pugi::node_element)
        {
            fail(next, "not well-formed XML: a second root element");
        }
    }
}

void Document::failParsing(const pugi::xml_parse_result& result) const
{
    // The innermost element that was begun last: where a file that was cut off ends.
    pugi::xml_node last = getRoot();
    for (pugi::xml_node next = last; next; next = next.last_child())
    {
        last = next.type() == pugi::node_element ? next : last;
    }
    std::string reason = std::string("not well-formed XML: ") + result.description();
    if (last && static_cast<std::size_t>(result.offset) + 1 >= m_text.size())
    {
        reason += "; the document ends too early";
    }
    const std::string where = last ? describeInContext(last) : "document";
    throw ReadError(compose(where, result.offset, reason));
}

std::vector<pugi::xml_node> Document::getElements(const char* library, const char* element) const
{
    std::vector<pugi::xml_node> elements;
    for (const pugi::xml_node& each : getRoot().children(library))
    {
        const auto found = each.children(element);
        elements.insert(elements.end(), found.begin(), found.end());
    }
    return elements;
}

std::vector<pugi::xml_node> Document::getIdentified(const char* library, const char* element)
{
    std::vector<pugi::xml_node> identified;
    for (const pugi::xml_node& each : getElements(library, element))
    {
        if (ownsItsID(each))
        {
            identified.push_back(each);
        }
        else if (getAttribute(each, "id").empty())
        {
            warn(each, "left out: nothing can refer to it without an id");
        }
    }
    return identified;
}

void Document::fail(const pugi::xml_node& where, const std::string& reason) const
{
    throw ReadError(compose(describeInContext(where), where.offset_debug(), reason));
}

void Document::warn(const pugi::xml_node& where, const std::string& reason)
{
    m_warnings.push_back(compose(describeInContext(where), where.offset_debug(), reason));
}

const std::vector<std::string>& Document::getWarnings() const
{
    return m_warnings;
}

std::string Document::compose(const std::string& where, std::ptrdiff_t offset,
                              const std::string& reason) const
{
    const std::size_t line = getLine(offset);
    const std::string place = line == 0 ? "" : " (line " + std::to_string(line) + ")";
    return onOneLine(m_displayName + ": " + where + place + ": " + reason);
}

/// The line, counted from 1, of an offset in the text; 0 when it can't be told.
std::size_t Document::getLine(std::ptrdiff_t offset) const
{
    if (!m_hasLines || offset < 0)
    {
        return 0;
    }
    if (m_lineEnds.empty())
    {
        for (std::size_t i = m_text.find('\n'); i != std::string::npos;
             i = m_text.find('\n', i + 1))
        {
            m_lineEnds.push_back(i);
        }
        m_lineEnds.push_back(m_text.size());
    }
    const auto end =
        std::lower_bound(m_lineEnds.begin(), m_lineEnds.end(), static_cast<std::size_t>(offset));
    return static_cast<std::size_t>(end - m_lineEnds.begin()) + 1;
}

void Document::indexIDs()
{
    const pugi::xml_node top = getRoot();
    pugi::xml_node element = top;
    while (element)
    {
        const bool skipped = std::string_view(element.name()) == "extra";
        const pugi::xml_attribute id = element.attribute("id");
        if (!skipped && *id.value() != '\0')
        {
            indexID(element, id.value());
        }
        element = advance(element, top, !skipped);
    }
}

void Document::indexID(const pugi::xml_node& element, const char* id)
{
    const auto [first, isNew] = m_ids.emplace(id, element);
    if (isNew)
    {
        return;
    }
    const std::string_view kind = element.name();
    const bool isNewKind = first->second.name() != kind &&
                           m_otherKinds.emplace(kindKey(element.name(), id), element).second;
    warn(element, "line " + std::to_string(getLine(first->second.offset_debug())) +
                      " has the same id; " +
                      (isNewKind ? "references are told apart by the kind of element"
                                 : "references find the first element of this kind"));
}

bool Document::hasID(const std::string& id) const
{
    return m_ids.count(id) != 0;
}

bool Document::ownsItsID(const pugi::xml_node& element) const
{
    const pugi::xml_attribute id = element.attribute("id");
    return id && find(id.value(), {element.name()}) == element;
}

pugi::xml_node Document::find(const std::string& id, Kinds kinds) const
{
    const auto first = m_ids.find(id);
    if (first == m_ids.end())
    {
        return pugi::xml_node();
    }
    for (const char* kind : kinds)
    {
        if (std::string_view(first->second.name()) == kind)
        {
            return first->second;
        }
        const auto other =
            m_otherKinds.empty() ? m_otherKinds.end() : m_otherKinds.find(kindKey(kind, id));
        if (other != m_otherKinds.end())
        {
            return other->second;
        }
    }
    return pugi::xml_node();
}

pugi::xml_node Document::resolve(const pugi::xml_node& where, std::string_view url,
                                 Kinds kinds) const
{
    if (url.empty() || url[0] != '#')
    {
        fail(where, "refers to " + quote(url) + ", which is not in this document");
    }
    const std::string id(url.substr(1));
    const pugi::xml_node found = find(id, kinds);
    if (!found)
    {
        const auto other = m_ids.find(id);
        const std::string hint = other == m_ids.end() ? ""
                                                      : "; that is the id of a <" +
                                                            std::string(other->second.name()) + ">";
        fail(where,
             "refers to " + quote(url) + ", but there is no such " + listKinds(kinds) + hint);
    }
    return found;
}

pugi::xml_node Document::resolveAttribute(const pugi::xml_node& where, const char* attribute,
                                          Kinds kinds) const
{
    const pugi::xml_attribute url = where.attribute(attribute);
    if (!url)
    {
        fail(where, std::string("the attribute ") + attribute + " is missing");
    }
    return resolve(where, url.value(), kinds);
}

std::string_view getText(const pugi::xml_node& element, std::string& storage)
{
    const auto isText = [](const pugi::xml_node& child)
    { return child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata; };
    std::string_view text;
    for (const pugi::xml_node& child : element.children())
    {
        if (isText(child) && text.empty() && storage.empty())
        {
            text = child.value();
        }
        else if (isText(child))
        {
            storage = storage.empty() ? std::string(text) : std::move(storage);
            storage += child.value();
        }
    }
    return storage.empty() ? text : std::string_view(storage);
}

std::string getTrimmedText(const pugi::xml_node& element)
{
    std::string storage;
    const std::string_view text = getText(element, storage);
    const std::size_t begin = text.find_first_not_of(" \t\r\n");
    if (begin == std::string_view::npos)
    {
        return "";
    }
    return std::string(text.substr(begin, text.find_last_not_of(" \t\r\n") - begin + 1));
}

std::string getAttribute(const pugi::xml_node& element, const char* name)
{
    return element.attribute(name).value();
}

std::string quote(std::string_view text)
{
    if (text.size() <= MAX_QUOTED)
    {
        return '"' + std::string(text) + '"';
    }
    std::size_t end = MAX_QUOTED;
    while (end > 0 && (text[end] & 0xC0) == 0x80) // inside a character of several bytes
    {
        --end;
    }
    return '"' + std::string(text.substr(0, end)) + "...\"";
}
} // namespace velmoran::examples::collada
