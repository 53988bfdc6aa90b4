// Reads references: which objects of the document a text means.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "repository/ModelTables.h"

class PathIndex;

/// Resolves the texts of references when all objects of a document are known by id.
///
/// A text is a list of tokens between white space: an id, "#id", a path ("#//Class/feature",
/// "//@feature.3/@other"), or something behind a file or address ("file#id") that leaves the
/// document. A token "prefix:Type" before one with "#" tells a type and is dropped. Lives on the
/// stack of the builder, whose tables it reads.
class ReferenceResolver {
public:
    explicit ReferenceResolver(const ModelTables& tables);
    ReferenceResolver(const ReferenceResolver&) = delete;
    ReferenceResolver& operator=(const ReferenceResolver&) = delete;
    ~ReferenceResolver();

    /// Adds a link for each token of a text that was read. Where it is not certain that the text
    /// is a reference, stops and returns false at a token that neither resolves nor holds "#".
    bool resolve(std::uint32_t owner, TextRef text, bool isCertain, std::vector<Link>& links);

    /// Adds a link to the object with exactly this id; throws ModelError if there is none.
    void resolveId(std::uint32_t owner, TextRef id, std::vector<Link>& links) const;

    /// What the links without a target count.
    const std::vector<TextRef>& outsideTexts() const { return outsideTexts_; }

private:
    bool resolveTokens(std::uint32_t owner, std::string_view tokens, bool isCertain,
                       std::vector<Link>& links);
    MMObject find(std::string_view token);
    MMObject findId(std::string_view id) const;
    MMObject findPath(std::string_view path);

    const ModelTables& tables_;
    std::unique_ptr<PathIndex> paths_;  // made for the first path
    std::vector<TextRef> outsideTexts_;
};
