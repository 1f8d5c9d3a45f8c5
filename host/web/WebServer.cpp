#include "WebServer.h"

#include <pthread.h>
#include <signal.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <random>
#include <thread>

#include <httplib.h>

#include "DialogChannel.h"
#include "EngineThread.h"
#include "HostError.h"
#include "ScoreError.h"
#include "ScoreSession.h"
#include "StaticFiles.h"
#include "WebJson.h"

namespace scribo::web {

namespace fs = std::filesystem;

fs::path DefaultPageFolder() {
  return SCRIBO_WEB_PAGE_FOLDER;
}

fs::path DefaultVerovioFolder() {
  return SCRIBO_VEROVIO_FOLDER;
}

namespace {

constexpr const char* kTokenHeader = "X-Scribo-Token";
constexpr const char* kPolicy =
    "default-src 'none'; script-src 'self' 'wasm-unsafe-eval'; worker-src 'self'; "
    "connect-src 'self'; style-src 'self' 'unsafe-inline'; font-src 'self' data:; "
    "img-src 'self' data: blob:; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";
constexpr const char* kMusicXmlType = "application/vnd.recordare.musicxml+xml";
constexpr const char* kArchiveType = "application/vnd.recordare.musicxml";

std::string NewToken() {
  std::random_device random;
  std::string token;
  for (int i = 0; i < 4; ++i) {
    char part[9];
    std::snprintf(part, sizeof part, "%08x", unsigned(random()));
    token += part;
  }
  return token;
}

// Compares in time that does not depend on where the texts differ.
bool SameSecret(const std::string& given, const std::string& secret) {
  unsigned char difference = given.size() == secret.size() ? 0 : 1;
  for (size_t i = 0; i < secret.size(); ++i)
    difference |= static_cast<unsigned char>(i < given.size() ? given[i] ^ secret[i] : 1);
  return difference == 0;
}

void Reply(httplib::Response& res, int status, const Json& body) {
  res.status = status;
  res.set_content(body.dump(), "application/json");
}

void Refuse(httplib::Response& res, int status, const std::string& why) {
  Reply(res, status, {{"error", why}});
}

// The request's JSON body, or nullopt after answering 400.
std::optional<Json> BodyOf(const httplib::Request& req, httplib::Response& res) {
  Json body = Json::parse(req.body, nullptr, false);
  if (body.is_discarded() || !body.is_object()) {
    Refuse(res, 400, "the request's body is not a JSON object");
    return std::nullopt;
  }
  return body;
}

int IntegerOr(const Json& object, const char* key, int fallback) {
  const Json& value = object.value(key, Json());
  return value.is_number_integer() ? value.get<int>() : fallback;
}

double NumberIn(const Json& object, const char* key, double low, double high, double fallback) {
  const Json& value = object.value(key, Json());
  return value.is_number() ? std::clamp(value.get<double>(), low, high) : fallback;
}

// The last part of `path`, fit to reappear in a download's Content-Disposition header: no
// quotes, backslashes or control characters.
std::string SafeFileName(const std::string& path) {
  std::string name = fs::path(path).filename().string();
  for (char& c : name)
    if (static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\' || c == 0x7F)
      c = '_';
  return name.empty() || name.size() > 255 ? "score.musicxml" : name;
}

Json OutcomeJson(const CommandOutcome& outcome) {
  Json alerts = Json::array();
  for (const auto& alert : outcome.alerts)
    alerts.push_back(AlertJson(alert));
  return {{"changed", outcome.changed},
          {"accepted", outcome.accepted},
          {"timedOut", outcome.timedOut},
          {"splitEntries", outcome.summary.splitEntries},
          {"changedMeasures", outcome.summary.changedMeasures},
          {"tupletsMade", outcome.tupletsMade},
          {"alerts", std::move(alerts)}};
}

class PageServer {
public:
  PageServer(const ServeOptions& options)
      : options_(options), files_(options.pageFolder, options.verovioFolder),
        channel_(options.dialogTimeout) {}

  void Start() {
    engine_.Call([this] {
      session_.LoadBundles(options_.engineBundle, options_.pluginBundle);
      session_.Open(options_.score, SafeFileName(options_.score.string()));
      Refresh();
    });
    Route();
  }

  int Listen(std::ostream& out) {
    int port = options_.port;
    bool bound = port == 0 ? (port = server_.bind_to_any_port("127.0.0.1")) > 0
                           : server_.bind_to_port("127.0.0.1", port);
    if (!bound)
      throw host::HostError(host::kExitScoreError,
                            "cannot listen on 127.0.0.1:" + std::to_string(options_.port) +
                                " (is another program using the port?)");
    for (const char* name : {"127.0.0.1", "localhost"})
      hosts_.push_back(std::string(name) + ":" + std::to_string(port));
    out << "scribo-host: serving " << options_.score.filename().string() << "; open http://"
        << hosts_.front() << "/#token=" << token_ << " (Ctrl+C stops)" << std::endl;
    server_.listen_after_bind();
    return 0;
  }

  void Stop() { server_.stop(); }

  // Ends a waiting dialog and lets the engine thread finish before the session goes away.
  void Close() { channel_.Close(); }

private:
  void Route();
  httplib::Server::HandlerResponse Guard(const httplib::Request& req, httplib::Response& res);
  void Refresh();
  Json State() const;
  void Exclusive(httplib::Response& res, std::function<Json()> job);
  void Invoke(const Json& body, httplib::Response& res);
  void Act(const Json& body, httplib::Response& res);
  void Answer(const Json& published, httplib::Response& res);
  void Open(const Json& body, httplib::Response& res);
  void Language(const Json& body, httplib::Response& res);
  void Download(const httplib::Request& req, httplib::Response& res);

  const ServeOptions options_;
  const StaticFiles files_;
  const std::string token_ = NewToken();
  std::vector<std::string> hosts_; // Host values of this server
  httplib::Server server_;
  DialogChannel channel_;
  ScoreSession session_; // engine thread only

  // What the page is shown of the document; the engine thread replaces it after every change.
  mutable std::mutex stateMutex_;
  Json document_;
  std::shared_ptr<const std::string> text_;

  EngineThread engine_; // last: stops before the session and the channel go away
};

httplib::Server::HandlerResponse PageServer::Guard(const httplib::Request& req,
                                                   httplib::Response& res) {
  using httplib::Server;
  res.set_header("Content-Security-Policy", kPolicy);
  res.set_header("X-Content-Type-Options", "nosniff");
  res.set_header("Referrer-Policy", "no-referrer");
  res.set_header("Cache-Control", "no-store");
  // A name that resolves here but is not this server's (DNS rebinding) is turned away.
  std::string host = req.get_header_value("Host");
  if (std::find(hosts_.begin(), hosts_.end(), host) == hosts_.end()) {
    Refuse(res, 403, "unknown host " + host);
    return Server::HandlerResponse::Handled;
  }
  if (req.path.rfind("/api/", 0) != 0)
    return Server::HandlerResponse::Unhandled;
  if (!SameSecret(req.get_header_value(kTokenHeader), token_)) {
    Refuse(res, 403, "missing or wrong session token; open the address scribo-host printed");
    return Server::HandlerResponse::Handled;
  }
  if (req.has_header("Origin") && req.get_header_value("Origin") != "http://" + host) {
    Refuse(res, 403, "requests from other sites are refused");
    return Server::HandlerResponse::Handled;
  }
  if (req.method != "GET" && req.get_header_value("Content-Type").rfind("application/json", 0)) {
    Refuse(res, 415, "send a JSON body (Content-Type: application/json)");
    return Server::HandlerResponse::Handled;
  }
  return Server::HandlerResponse::Unhandled;
}

void PageServer::Route() {
  server_.set_payload_max_length(options_.maxUpload / 3 * 4 + (size_t(1) << 20));
  server_.set_pre_routing_handler(
      [this](const httplib::Request& req, httplib::Response& res) { return Guard(req, res); });
  server_.Get("/api/state", [this](const httplib::Request&, httplib::Response& res) {
    Reply(res, 200, State());
  });
  server_.Get("/api/score", [this](const httplib::Request&, httplib::Response& res) {
    std::lock_guard lock(stateMutex_);
    res.set_header("X-Scribo-Revision", std::to_string(document_.value("revision", 0)));
    // Not a text/* type: the server would compress a large score on the fly, slowly.
    res.set_content(*text_, kMusicXmlType);
  });
  server_.Get("/api/download",
              [this](const httplib::Request& req, httplib::Response& res) { Download(req, res); });
  auto post = [this](const char* path,
                     void (PageServer::*handle)(const Json&, httplib::Response&)) {
    server_.Post(path, [this, handle](const httplib::Request& req, httplib::Response& res) {
      if (auto body = BodyOf(req, res))
        (this->*handle)(*body, res);
    });
  };
  post("/api/invoke", &PageServer::Invoke);
  post("/api/dialog", &PageServer::Act);
  post("/api/open", &PageServer::Open);
  server_.Post("/api/undo", [this](const httplib::Request&, httplib::Response& res) {
    Exclusive(res, [this] { return Json{{"done", session_.Undo()}}; });
  });
  server_.Post("/api/redo", [this](const httplib::Request&, httplib::Response& res) {
    Exclusive(res, [this] { return Json{{"done", session_.Redo()}}; });
  });
  post("/api/language", &PageServer::Language);
  server_.Get(R"(/.*)", [this](const httplib::Request& req, httplib::Response& res) {
    const StaticFile* file = files_.Find(req.path);
    if (!file)
      return Refuse(res, 404, "no such page: " + req.path);
    res.set_content(file->bytes, file->contentType.c_str());
  });
}

void PageServer::Refresh() {
  const musicxml::Score& score = session_.Score();
  Json staves = Json::array();
  for (const auto& staff : score.staves)
    staves.push_back(staff.name);
  Json measures = Json::array();
  for (size_t m = 0; m < score.measures.size(); ++m)
    measures.push_back(score.measures[m].number.empty() ? std::to_string(m + 1)
                                                        : score.measures[m].number);
  host::MenuTexts menu = session_.Menu();
  Json document = {{"revision", session_.Revision()},
                   {"name", session_.Name()},
                   {"staves", std::move(staves)},
                   {"measures", std::move(measures)},
                   {"canUndo", session_.CanUndo()},
                   {"canRedo", session_.CanRedo()},
                   {"menu", {{"item", menu.first}, {"description", menu.second}}},
                   {"language", session_.Language()},
                   {"languages", session_.Languages()},
                   {"maxUpload", options_.maxUpload},
                   {"dialogTimeout", options_.dialogTimeout.count()}};
  std::lock_guard lock(stateMutex_);
  document_ = std::move(document);
  text_ = session_.Text();
}

Json PageServer::State() const {
  Json state;
  {
    std::lock_guard lock(stateMutex_);
    state = document_;
  }
  state["busy"] = channel_.Running();
  std::optional<Json> dialog = channel_.OpenDialog();
  state["dialog"] = dialog ? *dialog : Json();
  return state;
}

// Runs `job` on the engine thread while no command runs, then answers with its result and the
// new state.
void PageServer::Exclusive(httplib::Response& res, std::function<Json()> job) {
  if (!channel_.Begin())
    return Refuse(res, 409, "the command is running; finish its dialog first");
  Json result;
  int status = 200;
  try {
    result = engine_.Call([this, &job] {
      Json done = job();
      Refresh();
      return done;
    });
  } catch (const musicxml::ScoreError& e) {
    status = 400;
    result = {{"error", e.what()}};
  } catch (const std::exception& e) {
    status = 500;
    result = {{"error", e.what()}};
  }
  channel_.Finish(result);
  result["state"] = State();
  Reply(res, status, result);
}

void PageServer::Invoke(const Json& body, httplib::Response& res) {
  const Json& range = body.value("selection", Json::object());
  Selection selection{IntegerOr(range, "firstMeasure", 0), IntegerOr(range, "lastMeasure", 0),
                      IntegerOr(range, "firstStaff", 0), IntegerOr(range, "lastStaff", 0)};
  const Json& screen = body.value("screen", Json::object());
  double width = NumberIn(screen, "width", 320, 16384, 1440);
  double height = NumberIn(screen, "height", 240, 16384, 900);
  std::optional<uint64_t> serial = channel_.Begin();
  if (!serial)
    return Refuse(res, 409, "the command is already running: one dialog at a time");
  engine_.Post([this, selection, width, height] {
    Json result;
    const musicxml::Score& score = session_.Score();
    int measures = static_cast<int>(score.measures.size());
    int staves = static_cast<int>(score.staves.size());
    if (selection.firstMeasure < 1 || selection.firstMeasure > selection.lastMeasure ||
        selection.lastMeasure > measures || selection.firstStaff < 1 ||
        selection.firstStaff > selection.lastStaff || selection.lastStaff > staves) {
      result = {{"error", "the selection must lie within measures 1-" + std::to_string(measures) +
                              " and staves 1-" + std::to_string(staves)}};
    } else {
      try {
        result = OutcomeJson(session_.Run(selection, width, height, channel_));
        Refresh();
      } catch (const std::exception& e) {
        result = {{"error", e.what()}};
      }
    }
    channel_.Finish(std::move(result));
  });
  Answer(channel_.WaitPast(*serial), res);
}

void PageServer::Act(const Json& body, httplib::Response& res) {
  std::optional<engine::DialogAction> action = ActionFromJson(body.value("action", Json()));
  if (!action)
    return Refuse(res, 400, "not a dialog action");
  std::optional<uint64_t> serial = channel_.Hand(std::move(*action));
  if (!serial)
    return Refuse(res, 409, "no dialog waits for an action");
  Answer(channel_.WaitPast(*serial), res);
}

// Answers with what the command published: its dialog's next state, or its result together
// with the document's new state.
void PageServer::Answer(const Json& published, httplib::Response& res) {
  if (published.is_null())
    return Refuse(res, 503, "the server is stopping");
  Json answer = published;
  int status = 200;
  if (answer.contains("result")) {
    if (answer["result"].contains("error"))
      status = 400;
    answer["state"] = State();
  }
  Reply(res, status, answer);
}

void PageServer::Open(const Json& body, httplib::Response& res) {
  const Json& name = body.value("name", Json());
  const Json& data = body.value("data", Json());
  if (!name.is_string() || !data.is_string())
    return Refuse(res, 400, "give the file's name and its bytes in base64");
  std::string fileName = SafeFileName(name.get<std::string>());
  std::optional<std::string> bytes = DecodeBase64(data.get_ref<const std::string&>());
  if (!bytes)
    return Refuse(res, 400, "the file's bytes are not base64");
  if (bytes->size() > options_.maxUpload)
    return Refuse(res, 413,
                  fileName + " is larger than " + std::to_string(options_.maxUpload >> 20) +
                      " MB; scores that large are not opened here");
  Exclusive(res, [this, &bytes, &fileName] {
    session_.OpenBytes(*bytes, fileName);
    return Json{{"done", true}};
  });
}

void PageServer::Language(const Json& body, httplib::Response& res) {
  std::string language = body.value("language", "");
  const auto& known = session_.Languages(); // fixed once the bundles are loaded
  if (std::find(known.begin(), known.end(), language) == known.end())
    return Refuse(res, 400, "the plug-in has no texts in \"" + language + "\"");
  Exclusive(res, [this, language] {
    session_.SetLanguage(language);
    return Json{{"done", true}};
  });
}

void PageServer::Download(const httplib::Request& req, httplib::Response& res) {
  bool compressed = req.get_param_value("format") == "mxl";
  std::string stem;
  std::string bytes;
  {
    std::lock_guard lock(stateMutex_);
    stem = fs::path(document_.value("name", "score")).stem().string();
    if (!compressed)
      bytes = *text_;
  }
  if (compressed) {
    if (channel_.Running())
      return Refuse(res, 409, "the command is running; finish its dialog first");
    try {
      bytes = engine_.Call([this] { return session_.FileBytes(true); });
    } catch (const std::exception& e) {
      return Refuse(res, 500, e.what());
    }
  }
  res.set_header("Content-Disposition",
                 "attachment; filename=\"" + stem + (compressed ? ".mxl" : ".musicxml") + "\"");
  res.set_content(std::move(bytes), compressed ? kArchiveType : kMusicXmlType);
}

// SIGINT and SIGTERM stop the server: blocked before any thread starts, so that every thread
// inherits the mask, and taken by one thread that stops the server.
class StopSignals {
public:
  StopSignals() {
    sigemptyset(&set_);
    sigaddset(&set_, SIGINT);
    sigaddset(&set_, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &set_, nullptr);
  }
  void StopOnSignal(PageServer& server) {
    waiter_ = std::thread([this, &server] {
      int signal = 0;
      sigwait(&set_, &signal);
      if (!done_)
        server.Stop();
    });
  }
  ~StopSignals() {
    done_ = true;
    if (waiter_.joinable()) {
      pthread_kill(waiter_.native_handle(), SIGTERM);
      waiter_.join();
    }
  }

private:
  sigset_t set_;
  std::atomic<bool> done_ = false;
  std::thread waiter_;
};

} // namespace

int Serve(const ServeOptions& options, std::ostream& out) {
  StopSignals signals;
  PageServer server(options);
  server.Start();
  signals.StopOnSignal(server);
  int code = server.Listen(out);
  server.Close();
  return code;
}

} // namespace scribo::web
