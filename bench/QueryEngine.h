// What answers the queries whose evaluation is measured.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "SyntheticModel.h"

/// One query, ready to be evaluated on the engine's model again and again. The first two are empty
/// where an engine cannot say the query.
struct PreparedQuery {
    /// Evaluates; returns the size of the result, which is made in full.
    std::function<std::size_t()> run;
    /// The result as a text, to be compared between engines: its elements, a line each: a number
    /// in decimal, true or false, a text, the name of an object.
    std::function<std::string()> answer;
    /// The processor's time taken so far by a process that answers; empty where this one does.
    std::function<std::chrono::nanoseconds()> processorTime{};
};

/// A way to ask the synthetic model, over its own form of it, which it makes before anything is
/// measured and keeps. Belongs to one thread.
///
/// The queries, by their names:
/// - count: the number of classes
/// - pattern: the operations whose name matches a regular expression
/// - prefix: the number of public operations whose name begins with a text
/// - every: whether every class has an operation with more than 2 parameters
/// - signature: the texts of the signatures of all operations
/// - sorted: the classes in the order of their names
/// - closure: what each class specialises, at any distance, each once, in any order
/// - path: the returned parameters of the public operations of the abstract classes
class QueryEngine {
public:
    QueryEngine() = default;
    QueryEngine(const QueryEngine&) = delete;
    QueryEngine& operator=(const QueryEngine&) = delete;
    virtual ~QueryEngine() = default;

    virtual PreparedQuery prepare(const std::string& query) = 0;

    /// A condition, compiled once, of one operation of a number below conditionOperands: whether
    /// it is public. Empty where the engine has none.
    virtual std::function<bool(std::size_t)> condition() { return {}; }
    static constexpr std::size_t conditionOperands = 1000;
};

/// The names of all queries.
const std::vector<std::string>& queryNames();

/// The engines. Each holds what it needs of the model, which must outlive it.
std::unique_ptr<QueryEngine> makeProductEngine(const synthetic::Model& model);
std::unique_ptr<QueryEngine> makeStructEngine(const synthetic::Model& model);
std::unique_ptr<QueryEngine> makePugixmlEngine(const synthetic::Model& model);
std::unique_ptr<QueryEngine> makeScriptQueryEngine(const synthetic::Model& model,
                                                   const char* modulePath);
/// Runs jq in a process of its own, over a document that it writes to this path.
std::unique_ptr<QueryEngine> makeJqEngine(const synthetic::Model& model, const std::string& path);
