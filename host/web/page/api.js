// Requests to the server. The session token comes with the address scribo-host printed
// (#token=...) and is kept for reloads of this tab.
const fromAddress = new URLSearchParams(location.hash.slice(1)).get('token');
if (fromAddress) sessionStorage.setItem('scribo-token', fromAddress);
const token = fromAddress ?? sessionStorage.getItem('scribo-token') ?? '';

export class ApiError extends Error {
  constructor(status, message, body) {
    super(message);
    this.status = status;
    this.body = body;
  }
}

async function request(path, init = {}) {
  const response = await fetch(path, { ...init, headers: { 'X-Scribo-Token': token, ...init.headers } });
  if (!response.ok) {
    const body = await response.json().catch(() => ({}));
    throw new ApiError(response.status, body.error ?? `${response.status} ${response.statusText}`, body);
  }
  return response;
}

export async function get(path) {
  const response = await request(path);
  return response.headers.get('Content-Type')?.startsWith('application/json') ? response.json() : response;
}

export async function post(path, body = {}) {
  const response = await request(path, {
    method: 'POST',
    headers: { 'Content-Type': 'application/json' },
    body: JSON.stringify(body),
  });
  return response.json();
}
