#include "links/sparkplug/sparkplug_names.h"

#include "links/link_command.h"

namespace kova::sparkplug {

std::string IdProblem(const std::string& id) {
    if (id.empty()) return "it is empty";
    if (id.size() > kMaxIdBytes)
        return "it is longer than " + std::to_string(kMaxIdBytes) + " bytes";
    if (id.find_first_of("+#") != std::string::npos) return "it holds a wildcard (+ or #)";
    if (id.find('/') != std::string::npos) return "it holds a /";
    for (unsigned char c : id)
        if (c < 0x20 || c == 0x7F) return "it holds control characters";
    return {};
}

bool ParseNodeName(const std::string& text, NodeName& name, std::string& error) {
    const auto slash = text.find('/');
    if (slash == std::string::npos) {
        error = "--sparkplug takes GROUP/NODE, not \"" + links::PrintableText(text) + "\"";
        return false;
    }
    NodeName n{text.substr(0, slash), text.substr(slash + 1)};
    if (const std::string why = IdProblem(n.group); !why.empty()) {
        error = "--sparkplug: the group ID \"" + links::PrintableText(n.group) +
                "\" cannot be used: " + why;
        return false;
    }
    if (const std::string why = IdProblem(n.node); !why.empty()) {
        error = "--sparkplug: the node ID \"" + links::PrintableText(n.node) +
                "\" cannot be used: " + why;
        return false;
    }
    name = std::move(n);
    return true;
}

std::string NodeTopic(const NodeName& name, NodeMessage kind) {
    const char* type = "NBIRTH";
    switch (kind) {
        case NodeMessage::Birth:
            type = "NBIRTH";
            break;
        case NodeMessage::Data:
            type = "NDATA";
            break;
        case NodeMessage::Death:
            type = "NDEATH";
            break;
        case NodeMessage::Command:
            type = "NCMD";
            break;
    }
    return std::string(kNamespace) + "/" + name.group + "/" + type + "/" + name.node;
}

std::string HostStateTopic(const std::string& hostId) {
    return std::string(kNamespace) + "/STATE/" + hostId;
}

}  // namespace kova::sparkplug
