// The results of evaluations, written for people or for programs.
#pragma once

#include <iostream>
#include <string>
#include <vector>

#include "Options.h"
#include "fliodram/MMValue.h"
#include "repository/RepositoryModel.h"

namespace mmq {

/// Writes the results of one command to a stream, one object after the other. Borrows the model and
/// the stream.
class ResultWriter {
public:
    /// With `isSingle`, there is only one object, which the text form need not name.
    ResultWriter(const RepositoryModel& model, Format format, bool isSingle,
                 std::ostream& stream = std::cout);

    /// Writes what stands above all results: in CSV the names of the columns.
    void writeHeader();

    /// Write a result, and the evidence for it in the same form, which may be empty.
    void writeValue(MMObject object, const MMValue& value, const std::string& why = {});
    void writeCollection(MMObject object, const std::vector<MMObject>& result,
                         const std::string& why = {});
    /// Writes why there is no result, in JSON; the other forms have no place for the sentence.
    void writeError(MMObject object, const std::string& sentence, const std::string& why = {});

private:
    std::string uidOf(MMObject object) const;
    /// The name of an object, or its class and uid where it has none.
    std::string labelOf(MMObject object) const;
    void writeJson(MMObject object, const char* field, const std::string& json,
                   const std::string& why);
    void writeCsv(MMObject object, const std::string& result);

    const RepositoryModel& model_;
    Format format_;
    bool isSingle_;
    std::ostream& stream_;
};

}  // namespace mmq
