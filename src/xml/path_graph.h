// Tables of element paths, compiled into a graph: reading a document takes one lookup an element, and no path
// is ever put together or compared.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "xml/characters.h"
#include "xml/reader.h"

namespace velmora {

using NodeNumber = std::uint16_t;
constexpr NodeNumber outside =
    0; // of all paths: where the first elements of the table may stand at any depth
constexpr NodeNumber no_node = 0xFFFF;

// `Action` tells what is done with an element, and has a value "none".
template <typename Action>
struct PathNode {
    Action action;
    std::uint16_t offset; // of where its value goes
};

// Names with "|" between them are one element under several names.
template <typename Action>
struct PathRow {
    std::string_view path;
    Action action;
    std::size_t offset;
};

template <typename Action, std::size_t max_nodes, std::size_t max_branches, std::size_t max_name>
class PathGraph {
public:
    using Node = PathNode<Action>;
    using Row = PathRow<Action>;

    // The element of this name inside another one, or no_node.
    constexpr NodeNumber find_child(NodeNumber parent, std::string_view name) const {
        if (name.empty()) return no_node;
        for (unsigned at = hash(parent, name); table_[at] != 0; at = (at + 1) % table_size) {
            const Branch& branch = branches_[table_[at] - 1];
            if (branch.parent != parent || branch.length != name.size()) continue;
            // The name of an element has at least eight bytes of its document behind it, or zeros. (Were it
            // constant, compilers would try to evaluate it while they compile.)
            bool is_found = std::is_constant_evaluated()
                                ? std::string_view(branch.name, branch.length) == name
                                : is_same(branch.name, name.data(), name.size());
            if (is_found) return branch.child;
        }
        return no_node;
    }

    constexpr const Node& node(NodeNumber number) const { return nodes_[number]; }

    // Adds a path behind an element; returns the element at its end.
    constexpr NodeNumber add(NodeNumber node, std::string_view path, Action action, std::size_t offset = 0) {
        while (!path.empty()) {
            const std::size_t length = first_of(path, '/');
            node = step(node, {path.data(), length});
            path.remove_prefix(length == path.size() ? length : length + 1);
        }
        nodes_[node] = {action, static_cast<std::uint16_t>(offset)};
        return node;
    }

    template <std::size_t size>
    constexpr void add(NodeNumber node, const Row (&rows)[size], std::size_t offset = 0) {
        for (const Row& row : rows)
            add(node, row.path, row.action, offset + row.offset);
    }

private:
    // From an element to one inside it.
    struct Branch {
        NodeNumber parent;
        NodeNumber child;
        std::uint8_t length;
        char name[max_name + 8]; // as much as a comparison may read
    };
    static constexpr unsigned table_size = max_branches <= 128 ? 256 : 1024;
    static_assert(max_branches * 2 <= table_size);

    static constexpr unsigned hash(NodeNumber parent, std::string_view name) {
        const auto byte = [&](std::size_t at) {
            return static_cast<unsigned>(static_cast<unsigned char>(name[at]));
        };
        const unsigned letters = byte(0) + byte(name.size() / 2) * 7 + byte(name.size() - 1) * 59;
        return (letters + static_cast<unsigned>(name.size()) * 131 + parent * 37u) % table_size;
    }

    static constexpr std::size_t first_of(std::string_view text, char c) {
        std::size_t at = 0;
        while (at < text.size() && text[at] != c)
            ++at;
        return at;
    }

    constexpr void add_branch(NodeNumber parent, std::string_view name, NodeNumber child) {
        Branch& branch = branches_[branch_count_++];
        branch.parent = parent;
        branch.child = child;
        branch.length = static_cast<std::uint8_t>(name.size());
        for (std::size_t i = 0; i < name.size(); ++i)
            branch.name[i] = name[i];
        unsigned at = hash(parent, name);
        while (table_[at] != 0)
            at = (at + 1) % table_size;
        table_[at] = branch_count_;
    }

    // The element under one of the names; a new one gets them all.
    constexpr NodeNumber step(NodeNumber parent, std::string_view names) {
        const NodeNumber known = find_child(parent, {names.data(), first_of(names, '|')});
        if (known != no_node) return known;
        const NodeNumber child = node_count_++;
        while (!names.empty()) {
            const std::size_t length = first_of(names, '|');
            add_branch(parent, {names.data(), length}, child);
            names.remove_prefix(length == names.size() ? length : length + 1);
        }
        return child;
    }

    Node nodes_[max_nodes] = {};
    Branch branches_[max_branches] = {};
    std::uint16_t table_[table_size] = {}; // numbers of branches, from 1; collisions go to the next place
    NodeNumber node_count_ = 1;            // the first is "outside"
    std::uint16_t branch_count_ = 0;
};

// Follows a document through a graph. What is not in it is skipped with all that is inside; but outside of
// all paths, where they may be wrapped in anything. `begin` and `end` are called with the node of each
// element and return false to stop. False when they did, or at an error of the document.
template <typename Graph, typename Begin, typename End>
bool follow_paths(XmlReader& xml, const Graph& graph, Begin begin, End end) {
    NodeNumber path[XmlReader::max_depth + 1] = {outside};
    int depth = 0;
    int skipped = 0; // levels
    for (;;) {
        const XmlReader::Event event = xml.next();
        if (event == XmlReader::Event::start) {
            if (skipped != 0) {
                ++skipped;
                continue;
            }
            NodeNumber node = graph.find_child(path[depth], xml.name());
            if (node == no_node && path[depth] != outside) {
                skipped = 1;
                continue;
            }
            if (node == no_node) node = outside;
            path[++depth] = node;
            if (!begin(graph.node(node))) return false;
        } else if (event == XmlReader::Event::end) {
            if (skipped != 0)
                --skipped;
            else if (!end(graph.node(path[depth--])))
                return false;
        } else {
            return event == XmlReader::Event::document_end;
        }
    }
}

} // namespace velmora
