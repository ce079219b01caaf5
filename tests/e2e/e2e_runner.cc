// Runs one pipeline case folder with the real program and checks its status, progress lines and files.
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {
std::string ReadFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

bool IsCaseControlFile(const fs::path& name) {
  return name == "expected" || name == "expected_stderr.txt" || name == "expected_status";
}

// Runs the program in the work folder with its error stream sent to a file; returns the wait status.
int RunProgram(const std::string& program, const fs::path& work, const fs::path& stderrFile) {
  pid_t pid = fork();
  if (pid == 0) {
    if (chdir(work.c_str()) != 0) _exit(127);
    FILE* err = freopen(stderrFile.c_str(), "w", stderr);
    if (!err) _exit(127);
    execl(program.c_str(), program.c_str(), "pipeline.xml", static_cast<char*>(nullptr));
    _exit(127);
  }
  int status = 0;
  while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

std::string DescribeStatus(int status) {
  if (WIFEXITED(status)) return std::to_string(WEXITSTATUS(status));
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT) return "abort";
  if (WIFSIGNALED(status)) return "signal " + std::to_string(WTERMSIG(status));
  return "unknown";
}
}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: e2e_runner <vorn_learn> <case folder> <work folder>" << std::endl;
    return 2;
  }
  std::string program = fs::absolute(argv[1]).string();
  fs::path caseDir = argv[2];
  fs::path work = argv[3];
  fs::remove_all(work);
  fs::create_directories(work);
  for (const auto& entry : fs::directory_iterator(caseDir)) {
    if (IsCaseControlFile(entry.path().filename())) continue;
    fs::copy(entry.path(), work / entry.path().filename(), fs::copy_options::recursive);
  }
  fs::path stderrFile = fs::absolute(work) / ".stderr";
  int status = RunProgram(program, work, stderrFile);
  std::string stderrText = ReadFile(stderrFile);
  int failures = 0;

  std::string wantStatus = "0";
  if (fs::exists(caseDir / "expected_status")) {
    auto lines = Lines(ReadFile(caseDir / "expected_status"));
    if (!lines.empty()) wantStatus = lines[0];
  }
  std::string gotStatus = DescribeStatus(status);
  if (gotStatus != wantStatus) {
    std::cerr << "status: expected " << wantStatus << ", got " << gotStatus << std::endl;
    failures++;
  }

  if (fs::exists(caseDir / "expected_stderr.txt")) {
    std::vector<std::string> got = Lines(stderrText);
    size_t at = 0;
    for (const std::string& want : Lines(ReadFile(caseDir / "expected_stderr.txt"))) {
      while (at < got.size() && got[at] != want) at++;
      if (at == got.size()) {
        std::cerr << "stderr: missing, in order: " << want << std::endl;
        failures++;
        break;
      }
      at++;
    }
  }

  fs::path expected = caseDir / "expected";
  if (fs::exists(expected)) {
    for (const auto& entry : fs::recursive_directory_iterator(expected)) {
      if (!entry.is_regular_file()) continue;
      fs::path relative = fs::relative(entry.path(), expected);
      fs::path written = work / relative;
      if (!fs::exists(written)) {
        std::cerr << "file not written: " << relative << std::endl;
        failures++;
      } else if (ReadFile(written) != ReadFile(entry.path())) {
        std::cerr << "file differs: " << relative << " (see " << fs::absolute(written) << ")" << std::endl;
        failures++;
      }
    }
  }

  if (failures) {
    std::cerr << "---- program stderr ----\n" << stderrText << std::endl;
    return 1;
  }
  return 0;
}
