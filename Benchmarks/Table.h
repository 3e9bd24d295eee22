// The table of figures as people read it.

#pragma once

#include <benchmark/benchmark.h>

#include <vector>

namespace bench {

class Table final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& context) override;
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

 private:
  int missed_ = 0;
};

}  // namespace bench
