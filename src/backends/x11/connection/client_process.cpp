#include "backends/x11/connection/client_process.h"

#include <xcb/res.h>

#include <utility>

namespace tarnix::x11 {
namespace {

// The server answers nothing for a client on another machine, and its own process for what belongs to no
// client.
std::vector<ClientProcess> clientsIn(const xcb_res_query_client_ids_reply_t* reply) {
  std::vector<ClientProcess> clients;
  if (reply == nullptr) return clients;
  for (auto ids = xcb_res_query_client_ids_ids_iterator(reply); ids.rem > 0;
       xcb_res_client_id_value_next(&ids)) {
    const bool isOfClient = ids.data->spec.client != XCB_NONE;
    if (!isOfClient || xcb_res_client_id_value_value_length(ids.data) != 1) continue;
    clients.push_back({ids.data->spec.client, *xcb_res_client_id_value_value(ids.data)});
  }
  return clients;
}

void askIds(RequestBatch& batch, const Connection& connection, xcb_window_t window,
            std::function<void(std::vector<ClientProcess>)> answered) {
  if (!connection.firstEvent(xcb_res_id)) return;
  const xcb_res_client_id_spec_t wanted{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
  batch.ask<xcb_res_query_client_ids_reply_t>(
      xcb_res_query_client_ids(connection.xcb(), 1, &wanted),
      [answered = std::move(answered)](const auto* reply) { answered(clientsIn(reply)); });
}

}  // namespace

void askProcess(RequestBatch& batch, const Connection& connection, xcb_window_t window,
                std::function<void(std::optional<std::uint32_t>)> answered) {
  askIds(batch, connection, window, [answered = std::move(answered)](const auto& clients) {
    answered(clients.empty() ? std::nullopt : std::optional(clients.front().process));
  });
}

void askClients(RequestBatch& batch, const Connection& connection,
                std::function<void(std::vector<ClientProcess>)> answered) {
  askIds(batch, connection, XCB_NONE, std::move(answered));
}

std::uint32_t clientOf(const Connection& connection, xcb_window_t window) {
  return window & ~xcb_get_setup(connection.xcb())->resource_id_mask;
}

}  // namespace tarnix::x11
