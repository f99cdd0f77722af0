// SPDX-License-Identifier: MIT
import { make } from './dom.ts';
import type { Settings } from './format.ts';
import { demand, Trouble } from './texts.ts';

/** More bytes than any scene that a browser could show. */
const kMostBytes = 1 << 30;

export const fromBase64 = (text: string): Uint8Array<ArrayBuffer> => Uint8Array.from(atob(text), (c) => c.charCodeAt(0));

const bytesOf = async (response: Response): Promise<Uint8Array<ArrayBuffer>> => new Uint8Array(await response.arrayBuffer());

/** Unpacks gzip; bytes that are not packed are returned as they are. */
export async function unpacked(bytes: Uint8Array<ArrayBuffer>, most = kMostBytes): Promise<Uint8Array<ArrayBuffer>> {
  if (bytes[0] !== 0x1f || bytes[1] !== 0x8b) return bytes;
  if (!globalThis.DecompressionStream) throw new Trouble('noUnpacking');
  // How much it is packed stands at its end.
  const end = bytes.length - 4;
  demand(end > 0 && new DataView(bytes.buffer, end).getUint32(0, true) <= most);
  const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream('gzip'));
  return bytesOf(new Response(stream));
}

/** The scene of a page in several files that was opened without a server: a script that hands it over. */
const fromScript = (address: string): Promise<Uint8Array<ArrayBuffer>> =>
  new Promise((resolve, reject) => {
    (window as unknown as { orbivueScene: (text: string) => void }).orbivueScene = (text) => resolve(fromBase64(text));
    // Where the scene was handed over before, this no longer matters.
    const missed = (): void => reject(new Trouble('noScene'));
    document.head.append(make('script', { src: address, onload: missed, onerror: missed }));
  });

async function fromServer(address: string): Promise<Uint8Array<ArrayBuffer>> {
  const response = await fetch(address).catch(() => undefined);
  if (!response?.ok) throw new Trouble('noScene');
  return bytesOf(response);
}

/** The bytes of the page's scene, a glTF binary: out of the page, or from the file beside it. */
export async function sceneBytes({ files }: Settings): Promise<Uint8Array<ArrayBuffer>> {
  if (!files) return unpacked(fromBase64(document.getElementById('scene')!.textContent!));
  return unpacked(await (location.protocol === 'file:' ? fromScript(files.script) : fromServer(files.scene)));
}
