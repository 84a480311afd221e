/** An error reply of the service; `message` may be shown to the user. */
export class ServiceError extends Error {
  constructor(status, message) {
    super(message);
    this.status = status;
  }
}

const unreachable = 'Navora cannot be reached. Nothing is lost, try again in a moment.';

async function call(method, path, {json, body, headers = {}} = {}) {
  const request = {
    method,
    headers: {Accept: 'application/json', ...headers},
    credentials: 'same-origin',
    cache: 'no-store'
  };
  if (json !== undefined) {
    request.headers['Content-Type'] = 'application/json';
    request.body = JSON.stringify(json);
  } else if (body !== undefined) {
    request.body = body;
  }
  let response;
  let answer = null;
  try {
    response = await fetch(path, request);
    if (response.status !== 204) answer = await response.json();
  } catch {
    throw new ServiceError(0, unreachable);
  }
  if (response.status === 401) location.assign('/login');
  if (!response.ok) throw new ServiceError(response.status, answer?.error?.message || unreachable);
  return answer;
}

export const get = (path) => call('GET', path);
export const post = (path, json, headers) => call('POST', path, {json, headers});
export const put = (path, json) => call('PUT', path, {json});
export const patch = (path, json) => call('PATCH', path, {json});
export const remove = (path) => call('DELETE', path);
export const upload = (path, file) =>
  call('POST', path, {body: file, headers: {'Content-Type': 'application/octet-stream'}});
