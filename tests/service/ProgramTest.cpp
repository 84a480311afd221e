#include <array>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "ServiceHarness.h"

namespace navora::service::tests {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

// The program as a child process, with its standard output and error.
class Program {
 public:
  explicit Program(std::vector<std::string> arguments) {
    std::array<int, 2> output{};
    std::array<int, 2> errors{};
    EXPECT_EQ(::pipe(output.data()) + ::pipe(errors.data()), 0);
    arguments.insert(arguments.begin(), NAVORA_SERVICE_PROGRAM);
    std::vector<char*> values;
    for (std::string& argument : arguments)
      values.push_back(argument.data());
    values.push_back(nullptr);
    process_ = ::fork();
    if (process_ == 0) {
      ::dup2(output[1], 1);
      ::dup2(errors[1], 2);
      for (const int end : {output[0], output[1], errors[0], errors[1]})
        ::close(end);
      ::execv(values[0], values.data());
      ::_exit(127);
    }
    ::close(output[1]);
    ::close(errors[1]);
    output_ = output[0];
    errors_ = errors[0];
  }

  ~Program() {
    if (process_ > 0) {
      ::kill(process_, SIGKILL);
      ::waitpid(process_, nullptr, 0);
    }
    ::close(output_);
    ::close(errors_);
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  std::string line() const {
    std::string text;
    for (char letter = 0; ::read(output_, &letter, 1) == 1;) {
      text += letter;
      if (letter == '\n') break;
    }
    return text;
  }

  void signal(int number) const { ::kill(process_, number); }

  // Waits for the exit; returns the status, or the negated number of the fatal signal.
  int wait() {
    int status = 0;
    ::waitpid(process_, &status, 0);
    process_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }

  std::string restOfOutput() const { return rest(output_); }
  std::string restOfErrors() const { return rest(errors_); }

 private:
  static std::string rest(int descriptor) {
    std::string text;
    std::array<char, 4096> chunk{};
    for (ssize_t size = 0; (size = ::read(descriptor, chunk.data(), chunk.size())) > 0;) {
      text.append(chunk.data(), static_cast<std::size_t>(size));
    }
    return text;
  }

  pid_t process_ = -1;
  int output_ = -1;
  int errors_ = -1;
};

int portOf(const std::string& line) {
  return std::stoi(line.substr(line.rfind(':') + 1));
}

TEST(ProgramTest, PrintsOneLineWhenReadyAndEndsCleanlyOnEitherSignal) {
  for (const int signal : {SIGTERM, SIGINT}) {
    Program program({});
    const std::string line = program.line();
    ASSERT_THAT(line, MatchesRegex("navora-service listening on http://127.0.0.1:[0-9]+/\n"));
    EXPECT_EQ(HttpClient(portOf(line)).get("/login").status, 200);
    program.signal(signal);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(program.restOfOutput(), "");
    EXPECT_EQ(program.restOfErrors(), "");
  }
}

TEST(ProgramTest, SamePortWorksAtOnceAfterARestartInEitherMode) {
  for (const std::vector<std::string>& mode : {std::vector<std::string>{}, {"--test"}}) {
    int port = 0;
    for (int round = 0; round < 3; ++round) {
      std::vector<std::string> arguments = mode;
      arguments.insert(arguments.end(), {"--port", std::to_string(port)});
      Program program(arguments);
      const std::string line = program.line();
      ASSERT_NE(line, "") << program.restOfErrors();
      port = portOf(line);
      // A connection that the service closes first stays in TIME_WAIT and keeps the port busy.
      EXPECT_EQ(HttpClient(port).get("/login").status, 200);
      program.signal(SIGTERM);
      ASSERT_EQ(program.wait(), 0);
    }
  }
}

TEST(ProgramTest, PortInUseIsAnErrorInEitherMode) {
  for (const std::vector<std::string>& mode : {std::vector<std::string>{}, {"--test"}}) {
    Program first(mode);
    const std::string port = std::to_string(portOf(first.line()));
    std::vector<std::string> arguments = mode;
    arguments.insert(arguments.end(), {"--port", port});
    Program second(arguments);
    EXPECT_EQ(second.wait(), 1);
    EXPECT_THAT(second.restOfErrors(), HasSubstr("cannot listen on 127.0.0.1 port " + port));
  }
}

TEST(ProgramTest, InvalidOptionExitsWithTwoAndAMessage) {
  Program program({"--host", "0.0.0.0"});
  EXPECT_EQ(program.wait(), 2);
  EXPECT_THAT(program.restOfErrors(), HasSubstr("--host must be a loopback address"));
  EXPECT_EQ(program.restOfOutput(), "");
}

TEST(ProgramTest, HelpNamesEveryOption) {
  Program program({"--help"});
  EXPECT_EQ(program.wait(), 0);
  const std::string help = program.restOfOutput();
  for (const char* option :
       {"--port", "--host", "--database", "--pages", "--account", "--job-delay", "--no-samples",
        "--updates", "--test ", "--test-driver", "--test-pages", "--help"}) {
    EXPECT_THAT(help, HasSubstr(option));
  }
}

}  // namespace
}  // namespace navora::service::tests
