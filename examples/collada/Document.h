#pragma once

#include <pugixml.hpp>

#include <cstddef>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace velmoran::examples::collada
{
/// A document that can't be read; the message is one line for the user. Thrown only
/// inside the reader.
class ReadError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// A parsed COLLADA document: its elements, their identifiers, and the messages about
/// them.
///
/// Elements may be nested to any depth: nothing here or in the readers recurses over
/// the document. What stands in `<extra>` is not looked at.
class Document
{
public:
    /// The kinds of element that a reference may name.
    using Kinds = std::initializer_list<const char*>;

    /// Parses `text`; throws `ReadError` when it is not XML or not COLLADA. Messages
    /// name the document `displayName`.
    Document(std::string text, std::string displayName);

    /// The `<COLLADA>` element.
    pugi::xml_node getRoot() const;

    /// Bytes of the text.
    std::size_t getSize() const;

    /// All `<element>` in all `<library>` of the document, in its order.
    std::vector<pugi::xml_node> getElements(const char* library, const char* element) const;

    /// The same, without those that can't be referred to: they have no ID or one that
    /// an earlier element of their kind has. Warns about a missing ID.
    std::vector<pugi::xml_node> getIdentified(const char* library, const char* element);

    // Messages: the document's name, the element with its line, and the reason.

    [[noreturn]] void fail(const pugi::xml_node& where, const std::string& reason) const;
    void warn(const pugi::xml_node& where, const std::string& reason);
    const std::vector<std::string>& getWarnings() const;

    // Identifiers and references, in constant time on average

    bool hasID(const std::string& id) const;

    /// Whether references to this element's ID find this element.
    bool ownsItsID(const pugi::xml_node& element) const;

    /// The first element of one of these kinds with this ID; empty when there is none.
    pugi::xml_node find(const std::string& id, Kinds kinds) const;

    /// The element that `url` ("#" and an ID), written at `where`, refers to. Fails
    /// when this document has none of these kinds.
    pugi::xml_node resolve(const pugi::xml_node& where, std::string_view url, Kinds kinds) const;

    /// The same for the URL in an attribute of `where`. Fails when that is missing.
    pugi::xml_node resolveAttribute(const pugi::xml_node& where, const char* attribute,
                                    Kinds kinds) const;

private:
    void parse();
    [[noreturn]] void failParsing(const pugi::xml_parse_result& result) const;
    void indexIDs();
    void indexID(const pugi::xml_node& element, const char* id);
    std::string compose(const std::string& where, std::ptrdiff_t offset,
                        const std::string& reason) const;
    std::size_t getLine(std::ptrdiff_t offset) const;

    std::string m_text;
    std::string m_displayName;
    pugi::xml_document m_document;
    bool m_hasLines = false;                                    ///< offsets count in m_text
    std::unordered_map<std::string_view, pugi::xml_node> m_ids; ///< by ID: the first element

    /// By kind, blank, ID: the first element of another kind than that in `m_ids`.
    std::unordered_map<std::string, pugi::xml_node> m_otherKinds;
    std::vector<std::string> m_warnings;
    mutable std::vector<std::size_t> m_lineEnds; ///< offsets; filled at first demand
};

/// The text of an element. `storage` holds it where comments cut it into pieces.
std::string_view getText(const pugi::xml_node& element, std::string& storage);

/// The text of an element without blanks around it.
std::string getTrimmedText(const pugi::xml_node& element);

/// An attribute's text; "" when it is missing.
std::string getAttribute(const pugi::xml_node& element, const char* name);

/// `text` in quotes, cut where it is too long for a message.
std::string quote(std::string_view text);
} // namespace velmoran::examples::collada
