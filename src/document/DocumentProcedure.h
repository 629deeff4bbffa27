#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

#include "components/base/RunTimeError.h"
#include "trap/Procedure.h"

namespace kw {

// Counts the documents that one control was told to open.
class Openings {
public:
  void Begin() { ++count; }
  std::uint64_t Count() const { return count; }

private:
  std::uint64_t count = 0;
};

// A procedure that works for the document that is open when it begins. During each event, box or message loop the host
// or the user may open another one; from then on no statement of the procedure runs.
class DocumentProcedure {
public:
  DocumentProcedure(Trap& trap, std::string_view name, const Openings& documents) : DocumentProcedure(trap, documents) {
    (*this)([&] { trap.TraceFunction(name); });
  }
  // For the procedure that traces its name later.
  DocumentProcedure(Trap& trap, const Openings& documents) : run(trap), openings(documents), begun(documents.Count()) {}
  DocumentProcedure(const DocumentProcedure&) = delete;
  DocumentProcedure& operator=(const DocumentProcedure&) = delete;

  bool IsOver() const { return openings.Count() != begun; }

  // These are as in Procedure. Once the procedure is over, a statement counts as one that failed (Cancelled).

  template <class Statement>
  bool operator()(Statement&& statement) {
    return !IsOver() && run(std::forward<Statement>(statement));
  }
  void Report() {
    if (!IsOver()) run.Report();
  }
  template <class Value, class Expression>
  Value Ask(Expression&& expression, Value otherwise) {
    return IsOver() ? otherwise : run.Ask(std::forward<Expression>(expression), std::move(otherwise));
  }
  template <class Statement>
  std::int32_t Attempt(Statement&& statement) {
    return IsOver() ? static_cast<std::int32_t>(ErrorNumber::Cancelled)
                    : run.Attempt(std::forward<Statement>(statement));
  }

private:
  Procedure run;
  const Openings& openings;
  std::uint64_t begun;
};

}  // namespace kw
