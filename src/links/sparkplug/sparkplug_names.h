#pragma once
// The names of an edge node on the broker: its group and node IDs, a primary host's ID,
// and the topics they make. An ID is one level of a topic: never empty, no wildcard (+ #),
// no level separator (/), no control characters.
#include <string>

namespace kova::sparkplug {

inline constexpr const char* kNamespace = "spBv1.0";
// The longest ID taken: a topic level of this system's names never comes near it.
inline constexpr std::size_t kMaxIdBytes = 256;

struct NodeName {
    std::string group;
    std::string node;
};

// "" when `id` can be a group, node or host ID, else why not.
std::string IdProblem(const std::string& id);
// "GROUP/NODE" -> the node's names; false and the message when either part cannot be one.
bool ParseNodeName(const std::string& text, NodeName& name, std::string& error);

enum class NodeMessage { Birth, Data, Death, Command };
// spBv1.0/GROUP/NBIRTH/NODE and its siblings.
std::string NodeTopic(const NodeName& name, NodeMessage kind);
// spBv1.0/STATE/HOST: where a primary host says whether it is online.
std::string HostStateTopic(const std::string& hostId);

}  // namespace kova::sparkplug
