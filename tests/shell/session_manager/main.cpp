// A session manager like those of the desktops, controlled by lines on its standard input: "save TYPE
// SHUTDOWN" (numbers), "cancelled", "die", "quit". Prints its address and the actions of its clients on
// standard output. With the argument "refuse" it accepts no clients.
#include <X11/SM/SMlib.h>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <poll.h>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

bool refuses = false;
SmsConn client = nullptr;
std::vector<IceConn> connections;

void tell(const std::string& line) {
  std::cout << line << std::endl;
}

Status registerClient(SmsConn connection, SmPointer, char* previousId) {
  if (previousId) {
    std::free(previousId);
    return 0;
  }
  char* identifier = SmsGenerateClientID(connection);
  SmsRegisterClientReply(connection, identifier);
  std::free(identifier);
  tell("registered");
  // A new client is asked for its state at once.
  SmsSaveYourself(connection, SmSaveLocal, False, SmInteractStyleNone, False);
  return 1;
}

void saveYourselfDone(SmsConn, SmPointer, Bool success) {
  tell(success ? "saved" : "failed to save");
}

void closeConnection(SmsConn, SmPointer, int count, char** reasons) {
  SmFreeReasons(count, reasons);
  client = nullptr;
  tell("left");
}

std::string shown(const SmProp& property) {
  const SmPropValue& value = property.vals[0];
  if (std::strcmp(property.type, SmCARD8) == 0)
    return std::to_string(static_cast<int>(*static_cast<unsigned char*>(value.value)));
  return std::string(static_cast<char*>(value.value), static_cast<std::size_t>(value.length));
}

void setProperties(SmsConn, SmPointer, int count, SmProp** properties) {
  for (int i = 0; i < count; ++i) {
    tell(std::string("property ") + properties[i]->name + "=" + shown(*properties[i]));
    SmFreeProperty(properties[i]);
  }
  std::free(properties);
}

Status newClient(SmsConn connection, SmPointer, unsigned long* mask, SmsCallbacks* callbacks, char** reason) {
  if (refuses) {
    *reason = ::strdup("no clients today");
    tell("refused");
    return 0;
  }
  client = connection;
  *callbacks = SmsCallbacks{};
  *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
          SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask | SmsSaveYourselfDoneProcMask |
          SmsCloseConnectionProcMask | SmsSetPropertiesProcMask | SmsDeletePropertiesProcMask |
          SmsGetPropertiesProcMask;
  callbacks->register_client.callback = registerClient;
  callbacks->interact_request.callback = [](SmsConn, SmPointer, int) { tell("asks to interact"); };
  callbacks->interact_done.callback = [](SmsConn, SmPointer, Bool) {};
  callbacks->save_yourself_request.callback = [](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {};
  callbacks->save_yourself_phase2_request.callback = [](SmsConn, SmPointer) {};
  callbacks->save_yourself_done.callback = saveYourselfDone;
  callbacks->close_connection.callback = closeConnection;
  callbacks->set_properties.callback = setProperties;
  callbacks->delete_properties.callback = [](SmsConn, SmPointer, int, char**) {};
  callbacks->get_properties.callback = [](SmsConn, SmPointer) {};
  return 1;
}

Bool anyHost(char*) {
  return True;
}

struct Listeners {
  int count = 0;
  IceListenObj* objects = nullptr;
};

Listeners listen() {
  char error[256] = "";
  Listeners listeners;
  if (!SmsInitialize("Test", "1", newClient, nullptr, anyHost, sizeof error, error) ||
      !IceListenForConnections(&listeners.count, &listeners.objects, sizeof error, error)) {
    std::cerr << error << std::endl;
    std::exit(1);
  }
  for (int i = 0; i < listeners.count; ++i)
    IceSetHostBasedAuthProc(listeners.objects[i], anyHost);
  IceSetIOErrorHandler([](IceConn) {});
  std::signal(SIGPIPE, SIG_IGN);
  char* address = IceComposeNetworkIdList(listeners.count, listeners.objects);
  tell(std::string("address ") + address);
  std::free(address);
  return listeners;
}

void accept(IceListenObj object) {
  IceAcceptStatus status;
  if (IceConn connection = IceAcceptConnection(object, &status))
    connections.push_back(connection);
}

void serve(std::size_t index) {
  IceConn connection = connections[index];
  const IceProcessMessagesStatus status = IceProcessMessages(connection, nullptr, nullptr);
  if (status == IceProcessMessagesSuccess)
    return;
  if (status == IceProcessMessagesIOError)
    IceCloseConnection(connection);
  connections.erase(connections.begin() + static_cast<std::ptrdiff_t>(index));
}

/// False to end.
bool obey(const std::string& line) {
  std::istringstream words(line);
  std::string word;
  int type = 0, shutdown = 0;
  words >> word >> type >> shutdown;
  if (word == "save" && client)
    SmsSaveYourself(client, type, shutdown, SmInteractStyleAny, False);
  else if (word == "cancelled" && client)
    SmsShutdownCancelled(client);
  else if (word == "die" && client)
    SmsDie(client);
  return word != "quit";
}

/// Executes the lines in the pipe. False to end.
bool obeyInput() {
  static std::string input;
  char bytes[256];
  const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
  if (count <= 0)
    return false;
  input.append(bytes, static_cast<std::size_t>(count));
  for (std::size_t end; (end = input.find('\n')) != input.npos; input.erase(0, end + 1))
    if (!obey(input.substr(0, end)))
      return false;
  return true;
}

/// Handles one ready input, since that can change the others. False to end.
bool step(const Listeners& listeners) {
  std::vector<pollfd> files{{STDIN_FILENO, POLLIN, 0}};
  for (int i = 0; i < listeners.count; ++i)
    files.push_back({IceGetListenConnectionNumber(listeners.objects[i]), POLLIN, 0});
  for (IceConn connection : connections)
    files.push_back({IceConnectionNumber(connection), POLLIN, 0});
  ::poll(files.data(), files.size(), -1);
  const std::size_t firstConnection = 1 + static_cast<std::size_t>(listeners.count);
  for (std::size_t i = files.size(); i-- > 1;)
    if (files[i].revents) {
      if (i >= firstConnection)
        serve(i - firstConnection);
      else
        accept(listeners.objects[i - 1]);
      return true;
    }
  return !files[0].revents || obeyInput();
}

} // namespace

int main(int argc, char** argv) {
  refuses = argc > 1 && std::strcmp(argv[1], "refuse") == 0;
  const Listeners listeners = listen();
  while (step(listeners))
    ;
  IceFreeListenObjs(listeners.count, listeners.objects); // Removes the sockets.
}
