#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "support/fileText.h"
#include "support/shell.h"
#include "support/workingFolder.h"

// The queries of docs/fleet.md on a made-up fleet, in SQLite and on two real servers of ClickHouse
// that have it between them.

namespace {

// By name: "low-memory", "outdated-systems, ClickHouse".
std::map<std::string, std::string> readyQueries() {
  std::map<std::string, std::string> queries;
  std::istringstream document(fileText(PROJECT_FOLDER "/docs/fleet.md"));
  const std::string fence = "```sql ";
  std::string name;
  for (std::string line; std::getline(document, line);) {
    if (line.starts_with(fence)) {
      name = line.substr(fence.size());
    } else if (line == "```") {
      name.clear();
    } else if (!name.empty()) {
      queries[name] += line + "\n";
    }
  }
  return queries;
}

// Lines of comma-separated values without the quotation marks that are matters of taste, and the
// engine's mark of null.
std::string plain(std::string csv) {
  std::erase(csv, '"');
  for (std::size_t at = csv.find("\\N"); at != std::string::npos; at = csv.find("\\N", at)) {
    csv.erase(at, 2);
  }
  return csv;
}

class Fleet : public WorkingFolder {
 protected:
  // Fourteen machines, two weeks.
  Fleet() {
    EXPECT_EQ(outcome("mkdir files && '" FLEET_GENERATOR "' 14 2 5 files").exitCode, 0);
    EXPECT_EQ(outcome("'" HUXUTIL "' load files --db fleet.db").exitCode, 0);
  }

  static std::string sqlite(const std::string& query) {
    std::ofstream("query.sql") << query;
    const Outcome result = outcome("'" HUXUTIL "' sql --csv --db fleet.db \"$(cat query.sql)\"");
    EXPECT_EQ(result.exitCode, 0) << query << result.errors;
    return plain(result.output);
  }
};

TEST_F(Fleet, EveryReadyQueryFindsWhatIsThereToBeFound) {
  const auto queries = readyQueries();
  EXPECT_GE(queries.size(), 12U);
  for (const auto& [name, query] : queries) {
    if (name.ends_with("ClickHouse")) continue;
    const std::string answer = sqlite(query);
    EXPECT_GT(std::ranges::count(answer, '\n'), 1) << name << ":\n" << answer;
  }
  EXPECT_EQ(sqlite("SELECT '9.1' WHERE version_key('9.1') < version_key('17.5')"
                   " AND version_key('17.5') < version_key('17.10')"
                   " AND version_key('17.05') = version_key('17.5 (b)')"
                   " AND version_key('17') < version_key('17.0') AND version_key(NULL) IS NULL"),
            "'9.1'\n9.1\n");
}

// A server on a port of its own, its files in the folder of the test. It ends with it.
class Server {
 public:
  Server(std::string folder, const std::string& shards, int port)
      : folder_(std::move(folder)), port_(port) {
    const std::string path = std::filesystem::current_path() / folder_;
    std::filesystem::create_directories(path + "/tmp");
    std::ofstream(folder_ + "/config.xml")
        << "<yandex><logger><level>warning</level><log>" << path << "/log</log><errorlog>" << path
        << "/errors</errorlog></logger><listen_host>127.0.0.1</listen_host><tcp_port>" << port
        << "</tcp_port><path>" << path << "/</path><tmp_path>" << path
        << "/tmp/</tmp_path><users_config>users.xml</users_config><default_profile>default"
           "</default_profile><default_database>default</default_database><mark_cache_size>67108864"
           "</mark_cache_size>"
        << shards << "</yandex>";
    std::ofstream(folder_ + "/users.xml")
        << "<yandex><profiles><default/></profiles><quotas><default/></quotas><users><default>"
           "<password/><networks><ip>127.0.0.1</ip></networks><profile>default</profile>"
           "<quota>default</quota></default></users></yandex>";
    process_ = fork();
    if (process_ == 0) {
      const std::string config = "--config-file=" + path + "/config.xml";
      std::freopen((path + "/output").c_str(), "w", stdout);
      dup2(STDOUT_FILENO, STDERR_FILENO);
      execlp("clickhouse-server", "clickhouse-server", config.c_str(), nullptr);
      _exit(127);
    }
  }

  ~Server() {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }

  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  std::string client() const {
    return "clickhouse-client --host 127.0.0.1 --port " + std::to_string(port_) + " ";
  }

  // Waits until it answers.
  testing::AssertionResult answers() const {
    for (int tenths = 0; tenths < 200; ++tenths) {
      if (outcome(client() + "--query 'SELECT 1'").output == "1\n") {
        return testing::AssertionSuccess();
      }
      if (waitpid(process_, nullptr, WNOHANG) != 0) break;
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return testing::AssertionFailure()
           << fileText(folder_ + "/output") << fileText(folder_ + "/errors");
  }

 private:
  std::string folder_;
  int port_;
  pid_t process_ = -1;
};

// One that is free now.
int freePort() {
  const int listener = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  bind(listener, reinterpret_cast<sockaddr*>(&address), size);
  getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
  close(listener);
  return ntohs(address.sin_port);
}

// As docs/fleet.md says it, with two servers.
TEST_F(Fleet, TwoServersGiveTheSameAnswersAsOneFile) {
  setenv("PATH", (std::string(getenv("PATH")) + ":/usr/sbin").c_str(), 1);  // users may lack it
  if (outcome("command -v clickhouse-server && command -v clickhouse-client && ls /proc/self/fd")
          .exitCode != 0) {
    GTEST_SKIP() << "needs clickhouse-server and clickhouse-client, and these /proc";
  }
  const int ports[] = {freePort(), freePort()};
  std::string shards = "<remote_servers><fleet>";
  for (const int port : ports) {
    shards += "<shard><replica><host>127.0.0.1</host><port>" + std::to_string(port) +
              "</port></replica></shard>";
  }
  shards += "</fleet></remote_servers>";
  const Server one("one", shards, ports[0]);
  const Server two("two", shards, ports[1]);
  const auto run = [](const std::string& line) {
    const Outcome result = outcome(line);
    EXPECT_EQ(result.exitCode, 0) << line << "\n" << result.errors;
    return plain(result.output);
  };

  for (const Server* server : {&one, &two}) {
    ASSERT_TRUE(server->answers());
    run(server->client() + "--query 'CREATE DATABASE shard'");
    run("'" HUXUTIL "' load --to clickhouse | " + server->client() + "--database shard -n");
  }
  const std::string client = one.client();
  run(client + "--query 'CREATE DATABASE fleet'; for table in $(" + client +
      "--database shard --query 'SHOW TABLES'); do echo \"CREATE TABLE fleet.$table AS "
      "shard.$table "
      "ENGINE = Distributed(fleet, shard, $table, cityHash64(machine_serial));\"; done | " +
      client + "-n");
  for (int time = 0; time < 2; ++time) {
    run("'" HUXUTIL "' load files --to clickhouse | " + client +
        "--database fleet --insert_distributed_sync=1 -n");
  }

  for (const Server* server : {&one, &two}) {
    const std::string count =
        run(server->client() + "--query 'SELECT count() FROM shard.machine_now'");
    EXPECT_THAT(std::stoi(count), testing::AllOf(testing::Gt(0), testing::Lt(13)));
  }
  const auto queries = readyQueries();
  for (const auto& [name, query] : queries) {
    const std::string other = name + ", ClickHouse";
    if (name.ends_with("ClickHouse")) continue;
    const std::string expected = sqlite(query);
    std::ofstream("query.sql") << (queries.contains(other) ? queries.at(other) : query);
    EXPECT_EQ(run(client + "--database fleet --format CSVWithNames --query \"$(cat query.sql)\""),
              expected)
        << name;
  }
}

}  // namespace
