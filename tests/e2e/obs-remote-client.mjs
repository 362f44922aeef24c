// A real obs-websocket client (obs-websocket-js from the npm registry) for the
// remote-control end-to-end test.
//   node obs-remote-client.mjs call REQUEST [JSON]   prints Tindra's responseData
//   node obs-remote-client.mjs listen FILE           appends each Tindra event to FILE
import OBSWebSocket, { EventSubscription } from 'obs-websocket-js';
import { appendFileSync } from 'node:fs';

const [mode, arg, json] = process.argv.slice(2);
const obs = new OBSWebSocket();
const subscriptions = mode === 'listen' ? EventSubscription.Vendors : EventSubscription.None;
for (let attempt = 0; ; attempt++) {
  try {
    await obs.connect('ws://127.0.0.1:4455', undefined, { eventSubscriptions: subscriptions });
    break;
  } catch (e) {
    if (attempt >= 30) throw e;
    await new Promise((r) => setTimeout(r, 1000));
  }
}
if (mode === 'call') {
  const request = { vendorName: 'Tindra', requestType: arg };
  // obs-websocket 5.1 refuses an empty requestData: a request without data has none.
  if (json) request.requestData = JSON.parse(json);
  const response = await obs.call('CallVendorRequest', request);
  console.log(JSON.stringify(response.responseData));
  await obs.disconnect();
} else if (mode === 'listen') {
  obs.on('VendorEvent', ({ vendorName, eventType, eventData }) => {
    if (vendorName === 'Tindra') appendFileSync(arg, JSON.stringify({ eventType, eventData }) + '\n');
  });
  appendFileSync(arg, '');
} else {
  console.error('usage: obs-remote-client.mjs call REQUEST [JSON] | listen FILE');
  process.exit(2);
}
