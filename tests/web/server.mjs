// Starts `scribo-host serve` on a free port for the page's tests and stops it afterwards.
import { spawn } from 'node:child_process';
import { fileURLToPath } from 'node:url';
import path from 'node:path';

export const root = path.resolve(path.dirname(fileURLToPath(import.meta.url)), '../..');
const program = process.env.SCRIBO_HOST ?? path.join(root, 'build', 'scribo-host');

export function startServer(score, options = []) {
  const child = spawn(program, ['serve', score, '--port', '0', ...options], { stdio: ['ignore', 'pipe', 'inherit'] });
  return new Promise((resolve, reject) => {
    let printed = '';
    child.on('exit', (code) => reject(new Error(`scribo-host serve ended with ${code}: ${printed}`)));
    child.stdout.on('data', (chunk) => {
      printed += chunk;
      const found = /open (http:\/\/[^/]+)\/#token=([0-9a-f]+)/.exec(printed);
      if (!found) return;
      child.removeAllListeners('exit');
      resolve({
        origin: found[1],
        token: found[2],
        url: `${found[1]}/#token=${found[2]}`,
        pid: child.pid,
        stop: () => new Promise((done) => (child.exitCode !== null ? done() : (child.on('exit', done), child.kill('SIGTERM')))),
      });
    });
  });
}
