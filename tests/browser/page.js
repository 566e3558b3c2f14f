// What the page does in the checks with a browser: it makes offers and answers, takes those of others, and tells in
// what state that left a connection.
"use strict";

const peers = new Map();

function openPeer(name, configuration) {
  peers.get(name)?.close();
  const peer = new RTCPeerConnection(configuration);
  peer.ondatachannel = ({channel}) => {
    channel.onmessage = ({data}) => channel.send(`${data} back`);
  };
  peers.set(name, peer);
}

function closePeers() {
  for (const peer of peers.values()) peer.close();
  peers.clear();
}

// The script has the connection as `peer`.
async function act(peer, script) {
  const AsyncFunction = (async () => {}).constructor;
  await new AsyncFunction("peer", script)(peer);
}

function until(peer, event, holds, what) {
  return new Promise((resolve, reject) => {
    const timer = setTimeout(() => reject(new Error(`${what} has not come about`)), 8000);
    const look = () => {
      if (!holds()) return;
      clearTimeout(timer);
      peer.removeEventListener(event, look);
      resolve();
    };
    peer.addEventListener(event, look);
    look();
  });
}

function gathered(peer) {
  return until(peer, "icegatheringstatechange", () => peer.iceGatheringState === "complete", "the end of gathering");
}

// With all candidates, as SIP wants it, or with none yet.
async function makeOffer(name, script, trickle) {
  const peer = peers.get(name);
  await act(peer, script);
  const offer = await peer.createOffer();
  await peer.setLocalDescription(offer);
  if (trickle) return offer.sdp;
  await gathered(peer);
  return peer.localDescription.sdp;
}

async function takeAnswer(name, sdp) {
  await peers.get(name).setRemoteDescription({type: "answer", sdp});
}

async function makeAnswer(name, script, sdp) {
  const peer = peers.get(name);
  await peer.setRemoteDescription({type: "offer", sdp});
  await act(peer, script);
  await peer.setLocalDescription(await peer.createAnswer());
  await gathered(peer);
  return peer.localDescription.sdp;
}

function namesOf(codecs) {
  return codecs.map(({payloadType, mimeType}) => `${payloadType} ${mimeType.split("/")[1]}`);
}

function stateOf(name) {
  const peer = peers.get(name);
  const transports = new Set();
  const transceivers = {};
  for (const each of peer.getTransceivers()) {
    const transport = each.sender.transport ?? each.receiver.transport;
    if (transport && each.currentDirection && each.currentDirection !== "stopped") transports.add(transport);
    const sending = each.sender.getParameters();
    transceivers[each.mid] = {
      direction: each.currentDirection,
      sent: namesOf(sending.codecs),
      received: namesOf(each.receiver.getParameters().codecs),
      encodings: sending.encodings.filter(({active}) => active).length,
    };
  }
  if (peer.sctp) transports.add(peer.sctp.transport);
  return {
    signaling: peer.signalingState,
    pending: Boolean(peer.pendingLocalDescription ?? peer.pendingRemoteDescription),
    transceivers,
    transports: transports.size,
    messageSize: peer.sctp ? peer.sctp.maxMessageSize : null,
  };
}

// What the other side says to a message, null without a data channel.
async function echoed(name, message) {
  const {messages} = peers.get(name);
  if (!messages) return null;
  await until(messages, "open", () => messages.readyState === "open", "a data channel");
  return new Promise((resolve, reject) => {
    setTimeout(() => reject(new Error("no message has come back")), 8000);
    messages.onmessage = ({data}) => resolve(data);
    messages.send(message);
  });
}

function connected(name) {
  const peer = peers.get(name);
  return until(peer, "connectionstatechange", () => peer.connectionState === "connected", "a connection");
}

// Something to send for each medium: a tone, and a picture that changes.
async function startMedia(name) {
  for (const each of peers.get(name).getTransceivers()) {
    const track = each.receiver.track.kind === "audio" ? tone() : picture();
    await each.sender.replaceTrack(track);
  }
}

function tone() {
  const context = new AudioContext();
  const destination = context.createMediaStreamDestination();
  const oscillator = context.createOscillator();
  oscillator.connect(destination);
  oscillator.start();
  return destination.stream.getAudioTracks()[0];
}

function picture() {
  const canvas = document.createElement("canvas");
  const context = canvas.getContext("2d");
  let number = 0;
  setInterval(() => {
    context.fillStyle = `rgb(${number % 256}, 0, 0)`;
    context.fillRect(0, 0, canvas.width, canvas.height);
    number += 16;
  }, 50);
  return canvas.captureStream().getVideoTracks()[0];
}

// Waits until packets have come for all media that the peer receives, and pictures of video.
async function receives(name) {
  const receiving = peers.get(name).getTransceivers().filter(
    ({currentDirection}) => currentDirection === "sendrecv" || currentDirection === "recvonly");
  await Promise.all(receiving.map(({mid, receiver}) => arrival(mid, receiver)));
}

async function arrival(mid, receiver) {
  const field = receiver.track.kind === "audio" ? "packetsReceived" : "framesDecoded";
  const deadline = performance.now() + 8000;
  while (performance.now() < deadline) {
    for (const report of (await receiver.getStats()).values()) {
      if (report.type === "inbound-rtp" && report[field] > 0) return;
    }
    await new Promise((resolve) => setTimeout(resolve, 50));
  }
  throw new Error(`nothing has come for ${mid}`);
}

// Nothing is decoded that nobody plays.
function play(name) {
  const tracks = peers.get(name).getReceivers().map(({track}) => track).filter(({kind}) => kind === "audio");
  const player = new Audio();
  player.srcObject = new MediaStream(tracks);
  return player.play();
}

// What audio has come so far: bytes, and how much of it can be heard.
async function heard(name) {
  const sum = {bytes: 0, energy: 0};
  for (const report of (await peers.get(name).getStats()).values()) {
    if (report.type !== "inbound-rtp" || report.kind !== "audio") continue;
    sum.bytes += report.bytesReceived;
    sum.energy += report.totalAudioEnergy;
  }
  return sum;
}
