#include "Benchmarks/Table.h"

#include <iomanip>
#include <sstream>

namespace bench {
namespace {

constexpr double allocationTarget = 1.2;
// Ratios are printed with two digits, and judged as printed.
constexpr double rounding = 0.005;

double counter(const benchmark::BenchmarkReporter::Run& run, const char* name) {
  const auto found = run.counters.find(name);
  return found == run.counters.end() ? 0 : found->second.value;
}

std::string fixed(double value, int digits) {
  std::ostringstream out;
  out << std::fixed << std::setprecision(digits) << value;
  return out.str();
}

std::string whole(double value) { return fixed(value, value == static_cast<int>(value) ? 0 : 1); }

}  // namespace

bool Table::ReportContext(const Context&) {
  GetOutputStream() << std::left << std::setw(32) << "case" << std::right << std::setw(10)
                    << "floor ns" << std::setw(10) << "ours ns" << std::setw(7) << "ratio"
                    << std::setw(8) << "target" << std::setw(14) << "allocations" << std::setw(7)
                    << "ratio" << std::setw(14) << "bytes"
                    << "  beside\n";
  return true;
}

void Table::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    const double target = counter(run, "target");
    const double ratio = counter(run, "ratio");
    const double allocationRatio = counter(run, "allocations_ratio");
    const bool isMissed = target > 0 && (ratio >= target + rounding ||
                                         allocationRatio >= allocationTarget + rounding);
    if (isMissed) ++missed_;
    GetOutputStream() << std::left << std::setw(32) << run.run_name.function_name << std::right
                      << std::setw(10) << fixed(counter(run, "floor_ns"), 0) << std::setw(10)
                      << fixed(counter(run, "ours_ns"), 0) << std::setw(7) << fixed(ratio, 2)
                      << std::setw(8) << (target > 0 ? fixed(target, 2) : "-") << std::setw(14)
                      << whole(counter(run, "floor_allocations")) + " / " +
                             whole(counter(run, "ours_allocations"))
                      << std::setw(7) << (allocationRatio > 0 ? fixed(allocationRatio, 2) : "-")
                      << std::setw(14)
                      << fixed(counter(run, "floor_bytes"), 0) + " / " +
                             fixed(counter(run, "ours_bytes"), 0)
                      << (isMissed ? " !" : "  ");
    if (!run.report_label.empty()) {
      GetOutputStream() << run.report_label << ' ' << fixed(counter(run, "beside_ns"), 0) << " ns";
    }
    GetOutputStream() << std::endl;
  }
}

void Table::Finalize() {
  GetOutputStream() << (missed_ == 0 ? "All targets are met.\n"
                                     : "Targets missed (!): " + std::to_string(missed_) + "\n");
}

}  // namespace bench
